#pragma once

#include "../tool/ToolRun.h"
#include "MaterialProject.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

// The material tool against `project`, a throw-away data root holding the
// headless operations' block library, template and data/rock.mat.
class ToolProjectTest : public ::testing::Test {
protected:
    void SetUp() override { materialproject::write(project); }

    // Runs the tool in `folder` (the project when empty).
    ToolResult tool(const std::vector<std::string>& args, const std::string& folder = "")
    {
        return runTool(args, {folder.empty() ? project.path() : folder, std::nullopt});
    }

    TempFolder project;
};

inline bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
