// The document's problems in the editor window: red frames and badges on
// the canvas, their messages as tooltip, and the "Problems" list under the
// canvas, over the graphs of tests/data/problems (copied to a project root).
#include "DataNode.h"
#include "GraphJoint.h"
#include "ProblemList.h"
#include "EditorWindowFixture.h"

#include <QTreeWidget>

namespace {

class ProblemsViewTest : public ProblemsWindowTest {
protected:
    UICanvas::Colour frameColour(int32_t id)
    {
        return graph->getPolygonColour(node(id)->getPolygonId(0));
    }

    QStringList rows()
    {
        QStringList texts;
        QTreeWidget* tree = window->getProblemList()->getTree();
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = tree->topLevelItem(i);
            texts << item->text(0) + "|" + item->text(1) + "|" + item->text(2);
        }
        return texts;
    }
};

TEST_F(ProblemsViewTest, NodesWithProblemsAreMarkedAndListedUntilFixed)
{
    open("data/cycle.mat");
    EXPECT_TRUE(node(4)->hasBadge());
    EXPECT_TRUE(node(1)->hasBadge());
    EXPECT_FALSE(node(0)->hasBadge());
    EXPECT_TRUE(frameColour(4) == Graph::kProblem);
    EXPECT_TRUE(frameColour(0) == Graph::kWhite);
    EXPECT_FALSE(window->getProblemList()->isHidden());
    EXPECT_EQ(rows(), QStringList({"Stage.PixelOutputUnlit|1|joint 3: no anchor \"colour\"",
                          "Stage.PixelOutputUnlit|1|joint 4: node 9 does not exist",
                          "Math.Multiply|4|cycle through nodes 4, 5", "Math.Multiply|5|cycle through nodes 4, 5",
                          "Stage.PixelOutputUnlit|1|warning: input \"color\" is not linked and has no default; the "
                          "program uses float4_zero"}));

    // The tooltip of a node is its messages.
    const GraphNode& cycled = *node(5);
    const float scale = AppData::get()->getScale();
    const int x = static_cast<int>(static_cast<float>(cycled.getX() + cycled.getWidth() / 2) * scale);
    const int y = static_cast<int>(static_cast<float>(cycled.getY() + cycled.getHeight() / 2) * scale);
    EXPECT_EQ(graph->problemTextAt(x, y), "cycle through nodes 4, 5");

    // A row selects its node; selection shows over the red.
    QTreeWidget* tree = window->getProblemList()->getTree();
    emit tree->itemClicked(tree->topLevelItem(3), 0);
    dispatch();
    EXPECT_EQ(graph->getSelectedNode(), node(5));
    EXPECT_TRUE(frameColour(5) == Graph::kYellow);

    // Cutting the cycle clears it from both nodes at once.
    for (GraphJoint* joint : std::vector<GraphJoint*>(graph->getJoints())) {
        if (joint->getLink()->node1->getId() == 4)
            graph->removeJoint(joint);
    }
    dispatch();
    EXPECT_FALSE(node(4)->hasBadge());
    EXPECT_FALSE(node(5)->hasBadge());
    EXPECT_TRUE(frameColour(4) == Graph::kWhite);
    EXPECT_EQ(rows().size(), 3);

    // Undoing the cut brings the cycle back on both nodes.
    while (window->undo())
        dispatch();
    EXPECT_TRUE(node(4)->hasBadge());
    EXPECT_TRUE(node(5)->hasBadge());
    EXPECT_EQ(rows().size(), 5);
}

TEST_F(ProblemsViewTest, TheListIsHiddenWhileThereIsNoProblem)
{
    open("data/broken.mat");
    EXPECT_TRUE(window->getProblemList()->isHidden());
    EXPECT_FALSE(node(3)->hasBadge());
    window->new_file();
    EXPECT_TRUE(window->getProblemList()->isHidden());
}

} // namespace
