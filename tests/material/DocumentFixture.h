#pragma once

#include "AppData.h"
#include "BlockManager.h"
#include "DataNode.h"
#include "jDir.h"

#include <gtest/gtest.h>

// The process-wide document with the block library of
// tests/data/material/root (or of projectRoot(), which a derived fixture may
// fill in its SetUp before calling this one's), emptied after every test.
class DocumentTest : public ::testing::Test {
protected:
    static constexpr const char* kRoot = MATERIAL_TEST_DATA "/material/root";

    virtual const char* projectRoot() const { return kRoot; }

    void SetUp() override
    {
        jDir::setProjectRoot(projectRoot());
        ASSERT_TRUE(doc->reloadBlocks());
    }

    void TearDown() override
    {
        doc->clear();
        jDir::setProjectRoot(m_previousRoot);
    }

    DataNode* create(const char* type)
    {
        DataNode* node = doc->createNode(type);
        EXPECT_NE(node, nullptr) << type;
        return node;
    }

    AppData* doc = AppData::get();

private:
    const jString m_previousRoot = jDir::getProjectRoot();
};
