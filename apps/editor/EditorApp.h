#pragma once

#include "EditorOptions.h"

class EditorMainWindow;

// The material-editor program: options, data root, layout file, the main
// window and, with --screenshot, the picture of it.
class EditorApp {
public:
    int run(int argc, char** argv);

private:
    bool install_root();
    // Opens the document of the command line; false when it did not load.
    bool open_document(EditorMainWindow& window);
    // Writes the grab of the window; false when the file could not be written.
    bool write_screenshot(EditorMainWindow& window) const;
    // Selects the node of --select-node; false when the document has none.
    bool select_node(EditorMainWindow& window) const;
    // Test-only: MATERIAL_EDITOR_TEST_RENDER_ORDER=N sets the render order
    // to N as the options panel does, so that a test has an edit to recover.
    static void apply_test_edit(EditorMainWindow& window);

    EditorOptions m_options;
};
