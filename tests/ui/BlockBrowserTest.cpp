// The block browser: the tree of the library's type names, the drag that
// carries a type onto the graph, and creating a node by double-click or
// Enter in the middle of the visible graph.
#include "AppData.h"
#include "BlockBrowser.h"
#include "BlockDrag.h"
#include "Block.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphNode.h"
#include "GraphScrollBox.h"
#include "MsgMngr.h"
#include "ProjectRootScope.h"
#include "UIEventTranslator.h"
#include "jLog.h"

#include <QDrag>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

// "a(b c) d": each item's text, its children in brackets.
jString shape(const QTreeWidgetItem* item)
{
    jString text = item->text(0).toStdString();
    if (item->childCount() == 0)
        return text;
    text += "(";
    for (int i = 0; i < item->childCount(); ++i)
        text += (i ? " " : "") + shape(item->child(i));
    return text + ")";
}

jString shape(const QTreeWidget& tree)
{
    jString text;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        text += (i ? " " : "") + shape(tree.topLevelItem(i));
    return text;
}

class BlockBrowserTest : public ::testing::Test {
protected:
    static constexpr const char* kRoot = MATERIAL_TEST_DATA "/ui/browser";

    void SetUp() override
    {
        ASSERT_TRUE(doc->reloadBlocks());
        doc->setScale(1.0f);
        doc->setInstance(false);

        window = std::make_unique<QWidget>();
        auto* layout = new QHBoxLayout(window.get());
        browser = new BlockBrowser(window.get());
        graph = new Graph(nullptr, 1600, 1000);
        scroll = new GraphScrollBox(window.get(), graph);
        layout->addWidget(browser);
        layout->addWidget(scroll, 1);
        window->resize(900, 500);
        browser->setGraph(graph);
        browser->refresh();
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    void TearDown() override
    {
        window.reset();
        MsgMngr::instance().clearQueue();
        doc->clear();
    }

    // Presses on the item and moves the pointer by (dx, 0) with the left
    // button held, through the browser's pointer records.
    bool dragItem(QTreeWidgetItem* item, int dx)
    {
        browser->setCurrentItem(item);
        const QPoint p = browser->visualItemRect(item).center();
        UIEventMouse down(p.x(), p.y(), p.x(), p.y(), UIEventMouse::kLeft);
        browser->onMouseDown(down);
        UIEventMouse move(p.x() + dx, p.y(), p.x() + dx, p.y(), UIEventMouse::kLeft);
        return browser->onMouseMove(move);
    }

    // A runner that drops the drag's data on the graph at graph pixels p.
    void dropOnGraphAt(QPoint p)
    {
        browser->setDragRunner([this, p](QDrag& drag) {
            dragPixmapSize = drag.pixmap().size();
            QDropEvent event(QPointF(p), Qt::CopyAction, drag.mimeData(), Qt::LeftButton, Qt::NoModifier);
            // The offscreen platform runs no drag, so Qt cannot name the
            // drag's source; the test names it.
            UIEventDrop drop = UIEventTranslator::drop(event, *graph, drag.source());
            EXPECT_EQ(drag.source(), browser);
            EXPECT_EQ(drop.dragType, UIEventDrop::kDragTreeItem);
            EXPECT_EQ(drop.sourceType, UIEventDrop::kSourceTreeBox);
            EXPECT_EQ(drop.localX, p.x());
            graph->onDropFinish(drop);
            return Qt::CopyAction;
        });
    }

    ProjectRootScope rootScope{kRoot};
    AppData* doc = AppData::get();
    std::unique_ptr<QWidget> window;
    BlockBrowser* browser = nullptr;
    Graph* graph = nullptr;
    GraphScrollBox* scroll = nullptr;
    QSize dragPixmapSize;
};

TEST_F(BlockBrowserTest, TreeHasOneLevelPerComponentInLibraryOrderAndFiltersToMatchingLeaves)
{
    EXPECT_EQ(shape(*browser), "a(b c) Math(Add) d PixelOutput");
    QTreeWidgetItem* c = browser->topLevelItem(0)->child(1);
    EXPECT_EQ(browser->get_full_node_type_name(c), "a.c");
    EXPECT_EQ(browser->get_full_node_type_name(browser->topLevelItem(2)), "d");
    EXPECT_EQ(browser->findLeaf("Math.Add")->toolTip(0),
              "Math.Add\ninputs: a (float4), B (float4)\noutputs: out (float4)");
    EXPECT_EQ(browser->findLeaf("PixelOutput")->toolTip(0), "PixelOutput\ninputs: color (float4), next");
    EXPECT_EQ(browser->topLevelItem(0)->toolTip(0), "");

    // The filter shows matching leaves expanded.
    browser->getFilter() = "add";
    browser->refresh();
    EXPECT_EQ(shape(*browser), "Math(Add)");
    EXPECT_TRUE(browser->topLevelItem(0)->isExpanded());

    // Names are compared lower-cased, the filter as it is stored.
    browser->getFilter() = "Add";
    browser->refresh();
    EXPECT_EQ(browser->topLevelItemCount(), 0);
    browser->getFilter() = "zzz";
    browser->refresh();
    EXPECT_EQ(browser->topLevelItemCount(), 0);
}

TEST_F(BlockBrowserTest, DragOfALeafCreatesItsNodeWhereItIsDroppedAndABranchWarns)
{
    // Without a runner the drag ends at once offscreen.
    EXPECT_TRUE(dragItem(browser->findLeaf("d"), 20));
    EXPECT_TRUE(graph->getNodes().empty());

    dropOnGraphAt({300, 200});
    // A pixel of trembling is no drag.
    EXPECT_FALSE(dragItem(browser->findLeaf("Math.Add"), 1));
    EXPECT_TRUE(graph->getNodes().empty());

    EXPECT_TRUE(dragItem(browser->findLeaf("Math.Add"), 20));
    ASSERT_EQ(graph->getNodes().size(), 1u);
    const GraphNode* node = graph->getNodes()[0];
    EXPECT_EQ(node->getData()->getBlock()->getType(), "Math.Add");
    EXPECT_EQ(node->getX(), 300);
    EXPECT_EQ(node->getY(), 200);
    EXPECT_EQ(dragPixmapSize, QSize(BlockBrowser::kDragIconSize, BlockBrowser::kDragIconSize));

    // A branch carries no name and the drop warns.
    jLog::Capture log;
    EXPECT_TRUE(dragItem(browser->topLevelItem(0), 20));
    EXPECT_EQ(graph->getNodes().size(), 1u);
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "warning: BlockBrowser::get_full_node_type_name: \"a\" is not leaf item, ignore",
                               "warning: Graph::onDropFinish:can not create node in instance mode",
                           }));
}

TEST_F(BlockBrowserTest, DoubleClickAndEnterCreateInTheMiddleOfTheVisibleGraph)
{
    scroll->horizontalScrollBar()->setValue(1000);
    scroll->verticalScrollBar()->setValue(500);
    const QSize view = scroll->viewport()->size();
    const QPoint centre = QRect(QPoint(1000, 500), view).center();

    QTreeWidgetItem* add = browser->findLeaf("Math.Add");
    browser->expandAll();
    browser->doItemsLayout();
    const QPoint addCentre = browser->visualItemRect(add).center();
    // What the pointer sends: a click, then the double-click press and its
    // release.
    QTest::mouseClick(browser->viewport(), Qt::LeftButton, Qt::NoModifier, addCentre);
    QTest::mouseDClick(browser->viewport(), Qt::LeftButton, Qt::NoModifier, addCentre);
    QTest::mouseRelease(browser->viewport(), Qt::LeftButton, Qt::NoModifier, addCentre);
    ASSERT_EQ(graph->getNodes().size(), 1u);
    EXPECT_EQ(graph->getNodes()[0]->getX(), centre.x());
    EXPECT_EQ(graph->getNodes()[0]->getY(), centre.y());

    // A second pixel output is refused as a drop of it would be.
    browser->setCurrentItem(browser->findLeaf("PixelOutput"));
    QTest::keyClick(browser, Qt::Key_Return);
    jLog::Capture log;
    QTest::keyClick(browser, Qt::Key_Return);
    EXPECT_EQ(graph->getNodes().size(), 2u);
    EXPECT_EQ(log.lines(),
              std::vector<jString>{"warning: Graph::onDropFinish:can not create multi ps output/input nodes"});

    // A branch only opens or closes.
    browser->setCurrentItem(browser->topLevelItem(0));
    QTest::keyClick(browser, Qt::Key_Return);
    EXPECT_EQ(graph->getNodes().size(), 2u);
    EXPECT_EQ(log.lines().size(), 1u);
}

} // namespace
