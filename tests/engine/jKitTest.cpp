#include "jKit.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

namespace {

struct PathParts {
    const char* path;
    const char* directory;
    const char* fileName;
    const char* baseName;
    const char* extension;
};

TEST(jKit, SplitsPathsIntoDirectoryFileNameBaseNameAndExtension)
{
    const PathParts cases[] = {
        {"a/b/c.mat", "a/b", "c.mat", "c", "mat"},
        {"data/tex.albedo.dds", "data", "tex.albedo.dds", "tex.albedo", "dds"},
        {"data/.hidden", "data", ".hidden", ".hidden", ""},
        {"data/dir/", "data/dir", "", "", ""},
        {"name.", "", "name.", "name", ""},
    };
    for (const PathParts& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(jKit::getDirectory(c.path), c.directory);
        EXPECT_EQ(jKit::getFileName(c.path), c.fileName);
        EXPECT_EQ(jKit::getBaseName(c.path), c.baseName);
        EXPECT_EQ(jKit::getExtension(c.path), c.extension);
    }
}

TEST(jKit, JoinsWithExactlyOneSeparator)
{
    const char* const cases[][3] = {
        {"a//", "/b", "a/b"}, {"/", "b", "/b"}, {"", "b", "b"}, {"a", "", "a"},
    };
    for (const auto& [left, right, joined] : cases)
        EXPECT_EQ(jKit::joinPath(left, right), joined) << left << " + " << right;
}

TEST(jKit, NormalizesDotSegmentsAndDoubledSeparators)
{
    // A relative path keeps the ".." that climb above its start; an
    // absolute one cannot climb above "/".
    const char* const cases[][2] = {
        {"a/./b//c/", "a/b/c"}, {"a/..", "."}, {"", ""}, {"../a/../../b", "../../b"}, {"/../a", "/a"}, {"/", "/"},
    };
    for (const auto& [path, normal] : cases)
        EXPECT_EQ(jKit::normalizePath(path), normal) << path;
}

// Replaces PATH for the life of the object.
struct ScopedPath {
    explicit ScopedPath(const std::string& value) { setenv("PATH", value.c_str(), 1); }
    ~ScopedPath() { setenv("PATH", old.c_str(), 1); }
    const std::string old = std::getenv("PATH") ? std::getenv("PATH") : "";
};

bool waitForFile(const std::string& path)
{
    // The opener runs detached; give it ample time, this bounds a hang only.
    for (int i = 0; i < 600 && !std::filesystem::exists(path); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return std::filesystem::exists(path);
}

// What a stand-in xdg-open on PATH was given, one argument per line.
std::string openedWith(const TempFolder& temp, const std::string& path)
{
    const std::string record = temp / "opened.txt";
    std::filesystem::remove(record);
    temp.write("bin/xdg-open", "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" + record + ".part\" && mv \"" + record
                                   + ".part\" \"" + record + "\"\n");
    std::filesystem::permissions(temp / "bin/xdg-open", std::filesystem::perms::owner_all);
    ScopedPath searchPath(temp / "bin" + ":/usr/bin:/bin");
    if (!jKit::openInFileManager(path) || !waitForFile(record))
        return "<not started>";
    return temp.read("opened.txt");
}

TEST(jKit, OpenInFileManagerHandsXdgOpenTheFolderHoldingAFileOrTheFolderItselfAndFailsWithoutIt)
{
    TempFolder temp;
    const std::string file = temp.write("project/data/rock mat.mat", "");
    EXPECT_EQ(openedWith(temp, file), temp / "project/data" + "\n");
    EXPECT_EQ(openedWith(temp, temp / "project"), temp / "project" + "\n");
    ScopedPath path(temp.makeFolder("empty-bin"));
    EXPECT_FALSE(jKit::openInFileManager(temp.path()));
}

} // namespace
