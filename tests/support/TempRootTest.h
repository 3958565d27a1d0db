#pragma once

#include "TempFolder.h"
#include "jDir.h"

#include <gtest/gtest.h>

// A test whose project root is `root`, a fresh temporary folder; the
// previous root comes back after the test.
class TempRootTest : public ::testing::Test {
protected:
    void SetUp() override { jDir::setProjectRoot(root.path()); }
    void TearDown() override { jDir::setProjectRoot(m_previousRoot); }

    TempFolder root;

private:
    const jString m_previousRoot = jDir::getProjectRoot();
};
