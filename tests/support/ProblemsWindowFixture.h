#pragma once

#include "AppData.h"
#include "DialogRecorder.h"
#include "GraphNode.h"
#include "Graph.h"
#include "MaterialEditorWindow.h"
#include "MsgMngr.h"
#include "TempFolder.h"
#include "WindowlessRoot.h"
#include "jDir.h"
#include "jLog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

// An editor window on a copy of tests/data/problems as its project root.
class ProblemsWindowTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::copy(MATERIAL_TEST_DATA "/problems", root.path(), std::filesystem::copy_options::recursive);
        m_previousRoot = jDir::getProjectRoot();
        jDir::setProjectRoot(root.path());
        MsgMngr::instance().clearQueue();
        window = std::make_unique<MaterialEditorWindow>(&host);
        window->resize(1200, 800);
        dispatch();
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

    GraphNode* node(int32_t id) { return window->getGraph()->findNode(id); }

    TempFolder root;
    WindowlessRoot host{1200, 800};
    DialogRecorder dialogs;
    jLog::Capture log;
    std::unique_ptr<MaterialEditorWindow> window;

private:
    jString m_previousRoot;
};
