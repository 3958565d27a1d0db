#pragma once

#include "AppData.h"
#include "DialogRecorder.h"
#include "Graph.h"
#include "GraphNode.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "TempFolder.h"
#include "WindowlessRoot.h"
#include "jDir.h"
#include "jLog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

// An editor window on a fresh project root; prepareRoot() fills the root
// (now the project root) before the window is made.
class EditorWindowTest : public ::testing::Test {
protected:
    virtual void prepareRoot() {}

    void SetUp() override
    {
        m_previousRoot = jDir::getProjectRoot();
        jDir::setProjectRoot(root.path());
        prepareRoot();
        MsgMngr::instance().clearQueue();
        window = std::make_unique<MaterialEditorWindow>(&host);
        dispatch();
        graph = window->getGraph();
    }

    void TearDown() override
    {
        window.reset();
        MsgMngr::instance().clearQueue();
        AppData::get()->init();
        jDir::setProjectRoot(m_previousRoot);
    }

    static void dispatch()
    {
        while (MsgMngr::instance().getPendingCount() > 0)
            MsgMngr::instance().dispatch();
    }

    void open(const char* relative)
    {
        ASSERT_TRUE(window->load(window->getDataPath() + relative));
        dispatch();
    }

    GraphNode* node(int32_t id) { return graph->findNode(id); }

    TempFolder root;
    WindowlessRoot host;
    DialogRecorder dialogs;
    jLog::Capture log;
    std::unique_ptr<MaterialEditorWindow> window;
    Graph* graph = nullptr;

private:
    jString m_previousRoot;
};

// The window on a copy of tests/data/problems, 1200 by 800.
class ProblemsWindowTest : public EditorWindowTest {
protected:
    void prepareRoot() override
    {
        std::filesystem::copy(MATERIAL_TEST_DATA "/problems", root.path(), std::filesystem::copy_options::recursive);
        host.width = 1200;
        host.height = 800;
    }

    void SetUp() override
    {
        EditorWindowTest::SetUp();
        window->resize(1200, 800);
        dispatch();
    }
};
