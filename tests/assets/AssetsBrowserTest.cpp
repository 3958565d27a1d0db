// The asset strip on the offscreen platform: listing, entering folders,
// the messages it posts and handles, unreadable folders, thumbnails and
// the drag of an image.
#include "AssetDrag.h"
#include "AssetImage.h"
#include "AssetListModel.h"
#include "AssetMaterial.h"
#include "AssetPathBar.h"
#include "AssetThumbnailer.h"
#include "AssetsBrowser.h"
#include "DdsBytes.h"
#include "MsgMngr.h"
#include "MsgNode.h"
#include "ProjectRootScope.h"
#include "TempFolder.h"
#include "UiMsg.h"
#include "jLog.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QDrag>
#include <QMouseEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// Records the messages the bus delivers.
class MessageRecorder : public MsgNode {
public:
    MessageRecorder() { attach(); }
    void processMsg(UiMsg* msg) override { received.emplace_back(msg->getCode(), msg->getText()); }
    std::vector<std::pair<int, jString>> received;
};

// A BGRA8 DDS of one colour.
std::string solidDds(int width, int height, uint8_t r, uint8_t g, uint8_t b)
{
    std::vector<uint8_t> pixels;
    for (int i = 0; i < width * height; ++i)
        pixels.insert(pixels.end(), {b, g, r, 255});
    return DdsBytes(uint32_t(width), uint32_t(height)).bgra8().pixels(pixels).text();
}

class AssetsBrowserTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        root.write("data/test/b.png", "");
        root.write("data/test/a.mat", "materials { material { name A } }\n");
        root.write("data/test/inst.mat", "materials { material { parent_path data/test/a.mat } }\n");
        root.write("data/test/tex10.dds", solidDds(4, 4, 0, 0, 255));
        root.write("data/test/Tex2.dds", solidDds(128, 64, 255, 0, 0));
        root.write("data/test/.hidden", "");
        root.write("data/test/Zeta/z.txt", "");
        root.makeFolder("data/test/alpha");
        browser = std::make_unique<AssetsBrowser>();
        browser->resize(1000, 110);
    }

    void TearDown() override
    {
        browser.reset();
        MsgMngr::instance().clearQueue();
    }

    jString names() const
    {
        jString text;
        for (int row = 0; row < browser->getCount(); ++row)
            text += (row ? " " : "") + browser->getAsset(row)->getName();
        return text;
    }

    void doubleClick(const jString& path)
    {
        const int row = browser->rowOf(path);
        ASSERT_GE(row, 0) << path;
        const QPoint centre = browser->getView()->visualRect(browser->getModel()->index(row)).center();
        // What the pointer sends: a click, then the double-click press and its release.
        QWidget* viewport = browser->getView()->viewport();
        QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, centre);
        QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, centre);
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, centre);
    }

    TempFolder root;
    ProjectRootScope rootScope{root.path()};
    std::unique_ptr<AssetsBrowser> browser;
};

TEST_F(AssetsBrowserTest, OpensOnTheMergedDataFolderAndListsFoldersFirstThenFilesByName)
{
    EXPECT_EQ(browser->getFolder(), "data");
    EXPECT_EQ(names(), "core materials test textures");
    ASSERT_TRUE(browser->showFolder("data/test"));
    EXPECT_EQ(names(), "alpha Zeta a.mat b.png inst.mat Tex2.dds tex10.dds");
    EXPECT_EQ(browser->getPathBar()->getCrumbTexts(),
              QStringList({QString::fromStdString(std::filesystem::path(root.path()).filename().string()), "data", "test"}));
    EXPECT_EQ(browser->getModel()->data(browser->getModel()->index(3), AssetListModel::PathRole).toString(),
              "data/test/b.png");
}

TEST_F(AssetsBrowserTest, DoubleClickEntersAFolderOrOpensAMaterialAndTheCrumbsAndBackspaceLeadBack)
{
    browser->showFolder("data/test");
    browser->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(browser.get()));
    doubleClick("data/test/Zeta");
    EXPECT_EQ(browser->getFolder(), "data/test/Zeta");
    EXPECT_EQ(names(), "z.txt");

    browser->getPathBar()->clickCrumb(1);
    EXPECT_EQ(browser->getFolder(), "data");

    browser->showFolder("data/test/Zeta");
    QTest::keyClick(browser->getView(), Qt::Key_Backspace);
    EXPECT_EQ(browser->getFolder(), "data/test");
    // The folder just left is the current item.
    EXPECT_EQ(browser->getView()->currentIndex().row(), browser->rowOf("data/test/Zeta"));

    // A material's double-click or Enter posts message 5 with its root-relative path.
    MessageRecorder recorder;
    doubleClick("data/test/inst.mat");
    doubleClick("data/test/b.png");
    browser->getView()->setCurrentIndex(browser->getModel()->index(browser->rowOf("data/test/a.mat")));
    QTest::keyClick(browser->getView(), Qt::Key_Return);
    MsgMngr::instance().dispatch();
    const std::vector<std::pair<int, jString>> expected{{5, "data/test/inst.mat"}, {5, "data/test/a.mat"}};
    EXPECT_EQ(recorder.received, expected);
    EXPECT_EQ(browser->getFolder(), "data/test");
}

TEST_F(AssetsBrowserTest, FollowsFilesAddedAndRemovedOnDisk)
{
    browser->showFolder("data/test/alpha");
    EXPECT_EQ(browser->getCount(), 0);
    EXPECT_EQ(browser->getView()->getEmptyText(), "This folder is empty");
    root.write("data/test/alpha/new.mat", "");
    QTRY_COMPARE_WITH_TIMEOUT(names(), jString("new.mat"), 5000);
    std::filesystem::remove(root / "data/test/alpha/new.mat");
    QTRY_COMPARE_WITH_TIMEOUT(browser->getCount(), 0, 5000);
}

TEST_F(AssetsBrowserTest, TheFilterShowsMatchingNamesUntilAnotherFolderIsEntered)
{
    browser->showFolder("data/test");
    QTest::keyClicks(browser->getFilterField(), "TEX");
    EXPECT_EQ(names(), "Tex2.dds tex10.dds");
    EXPECT_EQ(browser->rowOf("data/test/tex10.dds"), 1);
    EXPECT_EQ(browser->rowOf("data/test/a.mat"), -1);
    QTest::keyClicks(browser->getFilterField(), "x");
    EXPECT_EQ(browser->getCount(), 0);
    EXPECT_EQ(browser->getView()->getEmptyText(), "No name contains \"TEXx\"");

    browser->getFilterField()->setText("a");
    browser->activate(browser->rowOf("data/test/alpha"));
    EXPECT_EQ(browser->getFolder(), "data/test/alpha");
    EXPECT_EQ(browser->getFilterField()->text(), "");
    browser->goUp();
    EXPECT_EQ(browser->getCount(), 7);
}

TEST_F(AssetsBrowserTest, ContextMenuOpensAndCopiesThePath)
{
    browser->showFolder("data/test");
    auto texts = [](QMenu* menu) {
        QStringList list;
        for (QAction* action : menu->actions())
            list << action->text();
        return list;
    };
    std::unique_ptr<QMenu> image(browser->makeContextMenu(browser->rowOf("data/test/Tex2.dds")));
    EXPECT_EQ(texts(image.get()), QStringList({"Show in File Manager", "Copy Path"}));
    image->actions().last()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "data/test/Tex2.dds");

    std::unique_ptr<QMenu> folder(browser->makeContextMenu(browser->rowOf("data/test/Zeta")));
    EXPECT_EQ(texts(folder.get()), QStringList({"Open", "Show in File Manager", "Copy Path"}));
    folder->actions().first()->trigger();
    EXPECT_EQ(browser->getFolder(), "data/test/Zeta");
    EXPECT_EQ(browser->makeContextMenu(-1), nullptr);
}

TEST_F(AssetsBrowserTest, MaterialsShowTheirInstanceFlagOnTheIcon)
{
    browser->showFolder("data/test");
    auto* plain = dynamic_cast<AssetMaterial*>(browser->getAsset(browser->rowOf("data/test/a.mat")));
    auto* instance = dynamic_cast<AssetMaterial*>(browser->getAsset(browser->rowOf("data/test/inst.mat")));
    ASSERT_TRUE(plain && instance);
    const QImage plainIcon = plain->getIcon().toImage(), instanceIcon = instance->getIcon().toImage();
    EXPECT_EQ(plainIcon.size(), instanceIcon.size());
    // The badge sits in the lower right corner; the rest is the same sphere.
    EXPECT_EQ(plainIcon.pixel(10, 24), instanceIcon.pixel(10, 24));
    EXPECT_NE(plainIcon.pixel(40, 40), instanceIcon.pixel(40, 40));
}

TEST_F(AssetsBrowserTest, Message2ShowsTheFolderItNamesFromItsOwnRoot)
{
    int owner = 0, other = 0;
    browser->setRootElement(&owner);
    UiMsg absolute(2, root.path() + "/data/test/alpha/", &owner);
    EXPECT_TRUE(browser->processMsg(&absolute));
    EXPECT_EQ(browser->getFolder(), "data/test/alpha");

    UiMsg relative(2, "data/test/", nullptr);
    EXPECT_TRUE(browser->processMsg(&relative));
    EXPECT_EQ(browser->getFolder(), "data/test");

    UiMsg otherRoot(2, "data/test/Zeta/", &other);
    UiMsg otherCode(3, "data/test/Zeta/", &owner);
    EXPECT_FALSE(browser->processMsg(&otherRoot));
    EXPECT_FALSE(browser->processMsg(&otherCode));
    EXPECT_EQ(browser->getFolder(), "data/test");

    jLog::Capture log;
    UiMsg outside(2, "/etc/", &owner);
    EXPECT_TRUE(browser->processMsg(&outside));
    EXPECT_EQ(browser->getFolder(), "data/test");
    EXPECT_EQ(names(), "alpha Zeta a.mat b.png inst.mat Tex2.dds tex10.dds");
    EXPECT_EQ(log.text(), "warning: AssetsBrowser: \"/etc/\" is outside the data root\n");
}

TEST_F(AssetsBrowserTest, AFolderThatCannotBeReadGivesAnEmptyStripAndOneWarning)
{
    browser->showFolder("data/test");
    {
        jLog::Capture log;
        EXPECT_FALSE(browser->showFolder("data/test/missing"));
        EXPECT_EQ(browser->getCount(), 0);
        EXPECT_EQ(browser->getFolder(), "data/test/missing");
        EXPECT_EQ(browser->getView()->getEmptyText(), "This folder can't be read");
        EXPECT_EQ(log.text(), "warning: AssetsBrowser: can't read the folder \"data/test/missing\": no such folder\n");
    }
    jLog::Capture log;
    UiMsg file(2, "data/test/a.mat/", nullptr);
    EXPECT_TRUE(browser->processMsg(&file));
    EXPECT_EQ(browser->getCount(), 0);
    EXPECT_EQ(log.text(), "warning: AssetsBrowser: can't read the folder \"data/test/a.mat\": not a folder\n");
}

TEST_F(AssetsBrowserTest, ThumbnailsArriveForImagesInSightAndBrokenOnesWarnOnce)
{
    jLog::Capture log;
    browser->showFolder("data/test");
    browser->show();
    auto* red = static_cast<AssetImage*>(browser->getAsset(browser->rowOf("data/test/Tex2.dds")));
    auto* broken = static_cast<AssetImage*>(browser->getAsset(browser->rowOf("data/test/b.png")));
    QTRY_COMPARE_WITH_TIMEOUT(red->getThumbnailState(), AssetImage::Thumbnail::Ready, 10000);
    QTRY_COMPARE_WITH_TIMEOUT(broken->getThumbnailState(), AssetImage::Thumbnail::Failed, 10000);
    const QImage thumbnail = red->getIcon().toImage();
    EXPECT_EQ(thumbnail.size(), QSize(64, 32));
    EXPECT_EQ(QColor(thumbnail.pixel(32, 16)), QColor(255, 0, 0));
    EXPECT_EQ(log.text(), "warning: AssetsBrowser: can't make a thumbnail of \"data/test/b.png\": empty file\n");

    // Coming back shows the thumbnails kept, without asking again.
    browser->showFolder("data");
    QSignalSpy wanted(browser->getModel(), &AssetListModel::thumbnailWanted);
    browser->showFolder("data/test");
    browser->getView()->doItemsLayout();
    browser->getView()->viewport()->repaint();
    EXPECT_EQ(wanted.count(), 0);
    EXPECT_EQ(static_cast<AssetImage*>(browser->getAsset(browser->rowOf("data/test/Tex2.dds")))->getThumbnailState(),
              AssetImage::Thumbnail::Ready);
}

TEST_F(AssetsBrowserTest, OnlyTheImagesInSightAreAskedFor)
{
    for (int i = 0; i < 300; ++i)
        root.write("data/many/img" + std::to_string(i) + ".dds", solidDds(4, 4, 0, 255, 0));
    QSignalSpy wanted(browser->getModel(), &AssetListModel::thumbnailWanted);
    browser->showFolder("data/many");
    browser->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(browser.get()));
    EXPECT_EQ(browser->getCount(), 300);
    // The cells in sight (the view may also look at the last one).
    const int cells = browser->getView()->viewport()->width() / browser->getView()->gridSize().width() + 1;
    EXPECT_GE(wanted.count(), cells);
    EXPECT_LE(wanted.count(), cells + 1);
    QStringList paths;
    for (const QList<QVariant>& call : wanted)
        paths << call.first().toString();
    EXPECT_TRUE(paths.contains("data/many/img0.dds")) << paths.join(' ').toStdString();
}

TEST_F(AssetsBrowserTest, DraggingAnImageCarriesItsPath)
{
    browser->showFolder("data/test");
    browser->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(browser.get()));
    jString dragged, text;
    int drags = 0;
    browser->setDragRunner([&](QDrag& drag) {
        ++drags;
        dragged = AssetDrag::path(drag.mimeData());
        text = drag.mimeData()->text().toStdString();
        EXPECT_FALSE(drag.pixmap().isNull());
    });
    auto drag = [&](const jString& path) {
        const QRect rect = browser->getView()->visualRect(browser->getModel()->index(browser->rowOf(path)));
        QWidget* viewport = browser->getView()->viewport();
        const QPoint to = rect.center() + QPoint(30, -30);
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, rect.center());
        // Moves with the button held, as the pointer sends them: the first
        // arms the drag, the second, far enough, starts it.
        for (const QPoint& p : {rect.center() + QPoint(1, 0), to}) {
            QMouseEvent move(QEvent::MouseMove, p, viewport->mapToGlobal(p), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(viewport, &move);
        }
        QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    };
    drag("data/test/Tex2.dds");
    EXPECT_EQ(drags, 1);
    EXPECT_EQ(dragged, "data/test/Tex2.dds");
    EXPECT_EQ(text, "data/test/Tex2.dds");
    // Only images leave the strip.
    drag("data/test/a.mat");
    EXPECT_EQ(drags, 1);
}

} // namespace
