#pragma once

// The graph canvas tests' set-up: the process-wide document with the block
// library of tests/data/ui/graph, a 1600 by 1000 graph, and a recorder of
// every message the graph sends.

#include "AppData.h"
#include "DataNode.h"
#include "Graph.h"
#include "GraphAnchor.h"
#include "GraphJoint.h"
#include "GraphNode.h"
#include "MsgMngr.h"
#include "MsgNode.h"
#include "ProjectRootScope.h"
#include "UiMsg.h"
#include "jLog.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

struct SentMsg {
    int code;
    void* ptr;
    jString text;
    bool operator==(const SentMsg&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const SentMsg& msg)
{
    return out << "{" << msg.code << ", " << msg.ptr << ", \"" << msg.text << "\"}";
}

class MsgRecorder : public MsgNode {
public:
    void processMsg(UiMsg* msg) override { sent.push_back({msg->getCode(), msg->getPtr(), msg->getText()}); }
    std::vector<SentMsg> sent;
};

class GraphTest : public ::testing::Test {
protected:
    static constexpr const char* kRoot = MATERIAL_TEST_DATA "/ui/graph";
    static constexpr int kWidth = 1600;
    static constexpr int kHeight = 1000;

    void SetUp() override
    {
        ASSERT_TRUE(doc->reloadBlocks());
        doc->setScale(1.0f);
        doc->setInstance(false);
        graph = std::make_unique<Graph>(nullptr, kWidth, kHeight);
        MsgMngr::instance().clearQueue();
        recorder.attach();
    }

    void TearDown() override
    {
        graph.reset();
        recorder.detach();
        MsgMngr::instance().clearQueue();
        doc->setInstance(false);
        doc->clear();
    }

    // Everything sent since the last call, in delivery order.
    std::vector<SentMsg> sent()
    {
        MsgMngr::instance().dispatch();
        std::vector<SentMsg> result;
        result.swap(recorder.sent);
        return result;
    }

    // A node of that type at document position (x, y), added to the graph.
    GraphNode* add(const char* type, int x = 0, int y = 0)
    {
        DataNode* data = doc->createNode(type);
        EXPECT_NE(data, nullptr) << type;
        data->setPosX(x);
        data->setPosY(y);
        auto* node = new GraphNode(data, Graph::kWhite);
        graph->addNode(node);
        return node;
    }

    GraphJoint* link(GraphNode* from, const char* output, GraphNode* to, const char* input)
    {
        DataJoint* joint = doc->createJoint(from->getData()->findAnchor(output), to->getData()->findAnchor(input));
        return graph->createGrahpJoint(joint);
    }

    // Left press, moves and release at widget pixels, as the pointer does.
    static UIEventMouse at(UICanvas::Point p, uint32_t buttons = UIEventMouse::kLeft)
    {
        return UIEventMouse(int(p.x), int(p.y), int(p.x), int(p.y), buttons);
    }
    void press(UICanvas::Point p, uint32_t b = UIEventMouse::kLeft) { auto e = at(p, b); graph->onMouseDown(e); }
    void move(UICanvas::Point p, uint32_t b = UIEventMouse::kLeft) { auto e = at(p, b); graph->onMouseMove(e); }
    void release(UICanvas::Point p, uint32_t b = UIEventMouse::kLeft) { auto e = at(p, b); graph->onMouseUp(e); }
    // Drags from one anchor onto another.
    void drag(GraphAnchor* from, GraphAnchor* to)
    {
        press(from->getCentre());
        move(to->getCentre());
        release(to->getCentre());
    }

    ProjectRootScope rootScope{kRoot};
    AppData* doc = AppData::get();
    std::unique_ptr<Graph> graph;
    MsgRecorder recorder;
};
