// The asset items without the strip: kinds by extension, the material
// header read from the top of a file, the name order and the paths that
// messages may name.
#include "Asset.h"
#include "AssetFolderReader.h"
#include "AssetMaterial.h"
#include "MaterialHeader.h"
#include "ProjectRootScope.h"
#include "TempFolder.h"
#include "jDir.h"
#include "jLog.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>

namespace {

class AssetItemsTest : public ::testing::Test {
protected:
    TempFolder root;
    ProjectRootScope rootScope{root.path()};
};

TEST_F(AssetItemsTest, KindsFollowTheExtensionIgnoringCase)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a/rock.mat", "material"}, {"a/ROCK.PNG", "image"},  {"a/b.dds", "image"},   {"a/b.tga", "image"},
        {"a/b.jpg", "image"},       {"a/b.jpeg", "image"},    {"a/m.fbx", "mesh"},    {"a/m.obj", "mesh"},
        {"a/m.gltf", "mesh"},       {"a/m.mesh", "mesh"},     {"a/p.prefab", "prefab"}, {"a/s.lua", "script"},
        {"a/s.py", "script"},       {"a/w.world", "world"},   {"a/w.scene", "world"}, {"a/readme", "unknown"},
        {"a/x.matx", "unknown"},    {"a/.mat.bak", "unknown"},
    };
    for (const auto& [path, kind] : cases) {
        std::unique_ptr<Asset> asset = Asset::create(path, false);
        EXPECT_STREQ(Asset::kindName(asset->getKind()), kind) << path;
        EXPECT_EQ(asset->getPath(), path);
    }
    std::unique_ptr<Asset> folder = Asset::create("a/textures.png", true);
    EXPECT_EQ(folder->getKind(), Asset::Kind::Folder);
    EXPECT_EQ(folder->getName(), "textures.png");
    EXPECT_NE(dynamic_cast<AssetMaterial*>(Asset::create("a/x.Mat", false).get()), nullptr);
}

TEST_F(AssetItemsTest, MaterialHeaderTakesTheFirstMaterialsTopItems)
{
    MaterialHeader header = MaterialHeader::scan(
        "\xEF\xBB\xBF# rock\nmaterials {\n\tmaterial\n\t{\n\t\tname \"rock \\\"wet\\\"\" // named\n"
        "\t\tstate { name EDITOR_MODE; text 0 }\n\t\tparent data/a.mat\n\t\tparent_path data/b.mat\n\t}\n"
        "\tmaterial { name second }\n}\n");
    EXPECT_EQ(header.name, "rock \"wet\"");
    EXPECT_EQ(header.parentPath, "data/b.mat");
    EXPECT_TRUE(header.isInstance());

    header = MaterialHeader::scan("editor { name x; parent_path y }\nmaterials { material { state { name s } } }");
    EXPECT_EQ(header.name, "");
    EXPECT_FALSE(header.isInstance());
    // Malformed text ends the scan with what was found.
    EXPECT_EQ(MaterialHeader::scan("materials { material { parent z\n name \"open").parentPath, "z");
    EXPECT_EQ(MaterialHeader::scan("}}} materials { material { name q } }").name, "");
}

TEST_F(AssetItemsTest, MaterialReadsSurfaceIdAndInstanceFlagFromItsFile)
{
    root.write("data/plain.mat", "materials {\n\tmaterial {\n\t\tstate { name A; text 0 }\n\t}\n}\n");
    root.write("data/inst.mat", "materials {\n\tmaterial {\n\t\tname Rock\n\t\tparent_path data/plain.mat\n\t}\n}\n");
    AssetMaterial plain("data/plain.mat"), instance("data/inst.mat");
    EXPECT_EQ(plain.getSurfaceID(), "data/plain");
    EXPECT_FALSE(plain.isEnableInstance());
    EXPECT_EQ(instance.getSurfaceID(), "Rock");
    EXPECT_TRUE(instance.isEnableInstance());
    EXPECT_EQ(instance.getParentPath(), "data/plain.mat");
    EXPECT_EQ(instance.getToolTip(), "data/inst.mat\nsurface: Rock\ninstance of data/plain.mat");

    // Unreadable files are told once and never waited on.
    ASSERT_EQ(mkfifo((root / "data/pipe.mat").c_str(), 0600), 0);
    jLog::Capture log;
    AssetMaterial missing("data/gone.mat"), pipe("data/pipe.mat");
    EXPECT_FALSE(missing.isEnableInstance());
    EXPECT_EQ(missing.getSurfaceID(), "data/gone");
    EXPECT_FALSE(pipe.isEnableInstance());
    EXPECT_EQ(pipe.getSurfaceID(), "data/pipe");
    EXPECT_EQ(log.text(), "warning: AssetsBrowser: can't read the material \"data/gone.mat\": no such file\n"
                          "warning: AssetsBrowser: can't read the material \"data/pipe.mat\": a pipe, not a regular file\n");
}

TEST_F(AssetItemsTest, NamesSortNaturallyIgnoringCase)
{
    std::vector<jString> names{"tex10.dds", "Tex2.dds", "tex02b", "b", "A", "a", "tex2.dds", "x9", "x", "x10y"};
    std::sort(names.begin(), names.end(), AssetFolderReader::lessByName);
    const std::vector<jString> expected{"A", "a", "b", "Tex2.dds", "tex2.dds", "tex02b", "tex10.dds", "x", "x9", "x10y"};
    EXPECT_EQ(names, expected);
}

TEST_F(AssetItemsTest, MessagePathsBecomeRootRelativeOrAreRefused)
{
    jString out = "unchanged";
    EXPECT_TRUE(AssetFolderReader::toRootRelative(root.path() + "/data/textures/", out));
    EXPECT_EQ(out, "data/textures");
    EXPECT_TRUE(AssetFolderReader::toRootRelative(jDir::getBundledRoot() + "/data/core/", out));
    EXPECT_EQ(out, "data/core");
    EXPECT_TRUE(AssetFolderReader::toRootRelative("data//a/./b/", out));
    EXPECT_EQ(out, "data/a/b");
    EXPECT_TRUE(AssetFolderReader::toRootRelative("/", out));
    EXPECT_EQ(out, "");
    EXPECT_TRUE(AssetFolderReader::toRootRelative(root.path(), out));
    EXPECT_EQ(out, "");
    out = "unchanged";
    EXPECT_FALSE(AssetFolderReader::toRootRelative("data/../../etc", out));
    EXPECT_FALSE(AssetFolderReader::toRootRelative("/etc/", out));
    EXPECT_FALSE(AssetFolderReader::toRootRelative(root.path() + "-other/data", out));
    EXPECT_EQ(out, "unchanged");
}

TEST_F(AssetItemsTest, ListingMergesTheBundledRootAndSkipsHiddenAndEscapingEntries)
{
    root.write("data/mine.mat", "");
    root.write("data/.cache/x", "");
    root.makeFolder("data/core");
    TempFolder outside;
    std::filesystem::create_symlink(outside.path(), root / "data/away");
    std::filesystem::create_symlink(root / "data/core", root / "data/near");
    std::vector<AssetFolderReader::Entry> entries;
    jString reason;
    ASSERT_TRUE(AssetFolderReader::list("data", entries, reason)) << reason;
    jString listing;
    for (const auto& entry : entries)
        listing += entry.name + (entry.folder ? "/ " : " ");
    // "core" once (the project's), then the bundled folders the project lacks.
    EXPECT_EQ(listing, "core/ materials/ near/ textures/ mine.mat ");

    EXPECT_FALSE(AssetFolderReader::list("data/away", entries, reason));
    EXPECT_EQ(reason, "outside the data root");
    EXPECT_FALSE(AssetFolderReader::list("data/mine.mat", entries, reason));
    EXPECT_EQ(reason, "not a folder");
    EXPECT_FALSE(AssetFolderReader::list("data/none", entries, reason));
    EXPECT_EQ(reason, "no such folder");
    EXPECT_TRUE(entries.empty());
}

} // namespace
