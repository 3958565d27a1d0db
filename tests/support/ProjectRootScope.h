#pragma once

// Points the project root at a folder for the object's lifetime and puts
// the previous root back afterwards.

#include "jDir.h"

class ProjectRootScope {
public:
    explicit ProjectRootScope(const jString& root) : m_previous(jDir::getProjectRoot()) { jDir::setProjectRoot(root); }
    ~ProjectRootScope() { jDir::setProjectRoot(m_previous); }
    ProjectRootScope(const ProjectRootScope&) = delete;
    ProjectRootScope& operator=(const ProjectRootScope&) = delete;

private:
    jString m_previous;
};
