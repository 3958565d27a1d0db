#include "jDir.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::optional<std::string>& value) : m_name(name)
    {
        if (const char* old = std::getenv(name))
            m_old = old;
        if (value)
            setenv(name, value->c_str(), 1);
        else
            unsetenv(name);
    }
    ~ScopedEnvironment()
    {
        if (m_old)
            setenv(m_name, m_old->c_str(), 1);
        else
            unsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

class ScopedWorkingFolder {
public:
    explicit ScopedWorkingFolder(const std::string& folder) : m_old(fs::current_path()) { fs::current_path(folder); }
    ~ScopedWorkingFolder() { fs::current_path(m_old); }

private:
    fs::path m_old;
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

TEST_F(jDirTest, TheBundledRootIsTheCompiledInFolderAndTheDefaultProjectRoot)
{
    EXPECT_EQ(jDir::getBundledRoot(), fs::path(MATERIAL_SOURCE_ROOT).lexically_normal().string());
    EXPECT_EQ(jDir::getProjectRoot(), jDir::getBundledRoot());
    jDir::setProjectRoot(temp / "outer/./inner/../");
    EXPECT_EQ(jDir::getProjectRoot(), temp / "outer");
    jDir::setProjectRoot("");
    EXPECT_EQ(jDir::getProjectRoot(), jDir::getBundledRoot());
}

TEST_F(jDirTest, DiscoveryPrefersTheOptionThenTheEnvironmentThenThePathsAncestors)
{
    const std::string file = temp / "outer/inner/data/b/sand.mat";
    EXPECT_EQ(jDir::discoverRoot(temp / "plain", file), temp / "plain");
    {
        ScopedEnvironment variable("MATERIAL_EDITOR_ROOT", temp / "plain/sub");
        EXPECT_EQ(jDir::discoverRoot("", file), temp / "plain/sub");
        EXPECT_EQ(jDir::discoverRoot(temp / "plain", file), temp / "plain");
    }
    {
        ScopedEnvironment emptyVariable("MATERIAL_EDITOR_ROOT", "");
        EXPECT_EQ(jDir::discoverRoot("", file), temp / "outer/inner");
    }
    EXPECT_EQ(jDir::discoverRoot("", file), temp / "outer/inner");
    EXPECT_EQ(jDir::discoverRoot("", temp / "outer/data/a/rock.mat"), temp / "outer");
}

TEST_F(jDirTest, DiscoveryFromAPathThatDoesNotExistOrIsAFolder)
{
    EXPECT_EQ(jDir::discoverRoot("", temp / "outer/data/new/none.mat"), temp / "outer");
    EXPECT_EQ(jDir::discoverRoot("", temp / "outer/inner"), temp / "outer/inner");
    EXPECT_EQ(jDir::discoverRoot("", temp / "outer/inner/data"), temp / "outer/inner");
}

TEST_F(jDirTest, DiscoveryTakesRelativePathsFromTheWorkingFolder)
{
    ScopedWorkingFolder cwd(temp / "outer/data/a");
    EXPECT_EQ(jDir::discoverRoot("", ""), temp / "outer");
    EXPECT_EQ(jDir::discoverRoot("", "../../inner/data/b/sand.mat"), temp / "outer/inner");
    EXPECT_EQ(jDir::discoverRoot("../../../plain", "rock.mat"), temp / "plain");
}

TEST_F(jDirTest, DiscoveryFallsBackToTheBundledRoot)
{
    if (fs::exists(fs::path(temp.path()).parent_path() / "data"))
        GTEST_SKIP() << "the temporary folder's parent holds data/";
    EXPECT_EQ(jDir::discoverRoot("", temp / "plain/sub/x.mat"), jDir::getBundledRoot());
}

TEST_F(jDirTest, ReadingLooksInTheProjectThenTheBundleWritingOnlyInTheProject)
{
    jDir::setProjectRoot(temp / "outer");
    // CMakeLists.txt exists in the bundled root (the source tree) only.
    EXPECT_EQ(jDir::resolveRead("data/a/rock.mat"), temp / "outer/data/a/rock.mat");
    EXPECT_EQ(jDir::resolveRead("CMakeLists.txt"), jDir::getBundledRoot() + "/CMakeLists.txt");
    EXPECT_EQ(jDir::resolveRead("data/missing.mat"), temp / "outer/data/missing.mat");
    EXPECT_EQ(jDir::resolveRead("./data//a/rock.mat"), temp / "outer/data/a/rock.mat");
    EXPECT_EQ(jDir::resolveRead("/etc/hostname"), "/etc/hostname");

    EXPECT_EQ(jDir::resolveWrite("CMakeLists.txt"), temp / "outer/CMakeLists.txt");
    EXPECT_EQ(jDir::resolveWrite("data/a/rock.mat"), temp / "outer/data/a/rock.mat");
    EXPECT_EQ(jDir::resolveWrite("/tmp/x.mat"), "/tmp/x.mat");
}

TEST_F(jDirTest, ShellPathsInsideTheRootBecomeRootRelative)
{
    jDir::setProjectRoot(temp / "outer");
    ScopedWorkingFolder cwd(temp / "outer/data");
    jString relative;
    ASSERT_TRUE(jDir::toRootRelative("a/rock.mat", relative));
    EXPECT_EQ(relative, "data/a/rock.mat");
    ASSERT_TRUE(jDir::toRootRelative("./a/../a//new.mat", relative));
    EXPECT_EQ(relative, "data/a/new.mat");
    ASSERT_TRUE(jDir::toRootRelative(temp / "outer/inner/data/b/sand.mat", relative));
    EXPECT_EQ(relative, "inner/data/b/sand.mat");
    ASSERT_TRUE(jDir::toRootRelative("..", relative));
    EXPECT_EQ(relative, ".");
}

TEST_F(jDirTest, ShellPathsOutsideTheRootAreRefused)
{
    jDir::setProjectRoot(temp / "outer/inner");
    ScopedWorkingFolder cwd(temp / "outer/inner/data");
    jString relative = "untouched";
    EXPECT_FALSE(jDir::toRootRelative("../../data/a/rock.mat", relative));
    EXPECT_FALSE(jDir::toRootRelative("b/../../../x.mat", relative));
    EXPECT_FALSE(jDir::toRootRelative(temp / "outer/inner2/x.mat", relative));
    EXPECT_FALSE(jDir::toRootRelative("/etc/hostname", relative));
    EXPECT_FALSE(jDir::toRootRelative("", relative));
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
