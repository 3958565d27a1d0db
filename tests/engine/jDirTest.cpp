#include "jDir.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// Sets (or, given nullopt, unsets) an environment variable for the object's life.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::optional<std::string>& value) : m_name(name)
    {
        if (const char* old = std::getenv(name))
            m_old = old;
        set(value);
    }
    ~ScopedEnvironment() { set(m_old); }

private:
    void set(const std::optional<std::string>& value)
    {
        value ? setenv(m_name, value->c_str(), 1) : unsetenv(m_name);
    }
    const char* m_name;
    std::optional<std::string> m_old;
};

struct ScopedWorkingFolder {
    explicit ScopedWorkingFolder(const std::string& folder) { fs::current_path(folder); }
    ~ScopedWorkingFolder() { fs::current_path(old); }
    fs::path old = fs::current_path();
};

// Two projects: temp/outer holds data/, and temp/outer/inner holds data/ too.
class jDirTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        temp.write("outer/data/a/rock.mat", "");
        temp.write("outer/inner/data/b/sand.mat", "");
        temp.makeFolder("plain/sub");
    }
    void TearDown() override { jDir::setProjectRoot(""); }

    TempFolder temp;
    ScopedEnvironment noRootVariable{"MATERIAL_EDITOR_ROOT", std::nullopt};
};

// The option wins, then a non-empty MATERIAL_EDITOR_ROOT, then the nearest
// ancestor holding data/ of the path, which need not exist or may be a folder.
TEST_F(jDirTest, DiscoveryPrefersTheOptionThenTheEnvironmentThenThePathsAncestors)
{
    const struct {
        std::optional<std::string> variable;
        const char* option;
        const char* path;
        const char* root;
    } cases[] = {
        {std::nullopt, "plain", "outer/inner/data/b/sand.mat", "plain"},
        {"plain/sub", "", "outer/inner/data/b/sand.mat", "plain/sub"},
        {"plain/sub", "plain", "outer/inner/data/b/sand.mat", "plain"},
        {"", "", "outer/inner/data/b/sand.mat", "outer/inner"},
        {std::nullopt, "", "outer/data/new/none.mat", "outer"},
        {std::nullopt, "", "outer/inner/data", "outer/inner"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        ScopedEnvironment variable("MATERIAL_EDITOR_ROOT",
            c.variable && !c.variable->empty() ? temp / *c.variable : c.variable);
        EXPECT_EQ(jDir::discoverRoot(*c.option ? temp / c.option : "", temp / c.path), temp / c.root);
    }
    // Relative paths are taken from the working folder.
    ScopedWorkingFolder cwd(temp / "outer/data/a");
    EXPECT_EQ(jDir::discoverRoot("", ""), temp / "outer");
    EXPECT_EQ(jDir::discoverRoot("../../../plain", "rock.mat"), temp / "plain");
}

TEST_F(jDirTest, ReadingLooksInTheProjectThenTheBundleWritingOnlyInTheProject)
{
    jDir::setProjectRoot(temp / "outer");
    // CMakeLists.txt exists in the bundled root (the source tree) only.
    EXPECT_EQ(jDir::resolveRead("data/a/rock.mat"), temp / "outer/data/a/rock.mat");
    EXPECT_EQ(jDir::resolveRead("CMakeLists.txt"), jDir::getBundledRoot() + "/CMakeLists.txt");
    EXPECT_EQ(jDir::resolveRead("data/missing.mat"), temp / "outer/data/missing.mat");
    EXPECT_EQ(jDir::resolveRead("/etc/hostname"), "/etc/hostname");

    EXPECT_EQ(jDir::resolveWrite("CMakeLists.txt"), temp / "outer/CMakeLists.txt");
    EXPECT_EQ(jDir::resolveWrite("/tmp/x.mat"), "/tmp/x.mat");
}

TEST_F(jDirTest, StoredPathsMayNotBeAbsoluteOrClimbOutOfTheRoot)
{
    for (const char* inside : {"data/a.mat", "data/../data/a.mat", "a/b/../../c"})
        EXPECT_TRUE(jDir::isInsideRoot(inside)) << inside;
    for (const char* outside : {"/etc/passwd", "..", "data/../../a.mat", "data/./../.."})
        EXPECT_FALSE(jDir::isInsideRoot(outside)) << outside;
}

TEST_F(jDirTest, ShellPathsInsideTheRootBecomeRootRelativeAndOthersAreRefused)
{
    jDir::setProjectRoot(temp / "outer");
    ScopedWorkingFolder cwd(temp / "outer/data");
    const std::pair<std::string, const char*> inside[] = {
        {"./a/../a//new.mat", "data/a/new.mat"},
        {temp / "outer/inner/data/b/sand.mat", "inner/data/b/sand.mat"},
        {"..", "."},
    };
    for (const auto& [path, expected] : inside) {
        jString relative;
        ASSERT_TRUE(jDir::toRootRelative(path, relative)) << path;
        EXPECT_EQ(relative, expected);
    }

    jDir::setProjectRoot(temp / "outer/inner");
    ScopedWorkingFolder innerCwd(temp / "outer/inner/data");
    jString relative = "untouched";
    for (const std::string& path : {std::string("../../data/a/rock.mat"), temp / "outer/inner2/x.mat", std::string()})
        EXPECT_FALSE(jDir::toRootRelative(path, relative)) << path;
    EXPECT_EQ(relative, "untouched");
}

// A symlink keeps its name when it leads inside the root and is refused
// when it leads out.
TEST_F(jDirTest, SymlinksAreJudgedByWhereTheyLead)
{
    temp.write("elsewhere/x.mat", "");
    fs::create_directory_symlink(temp / "elsewhere", temp / "outer/data/link");
    fs::create_directory_symlink(temp / "outer/data/a", temp / "outer/data/alias");
    fs::create_directory_symlink(temp / "outer", temp / "outer-link");
    jDir::setProjectRoot(temp / "outer");
    jString relative;
    EXPECT_FALSE(jDir::toRootRelative(temp / "outer/data/link/x.mat", relative));
    ASSERT_TRUE(jDir::toRootRelative(temp / "outer/data/alias/rock.mat", relative));
    EXPECT_EQ(relative, "data/alias/rock.mat");
    // A path reaching the root through another name is inside it too.
    ASSERT_TRUE(jDir::toRootRelative(temp / "outer-link/data/a/rock.mat", relative));
    EXPECT_EQ(relative, "data/a/rock.mat");
}

} // namespace
