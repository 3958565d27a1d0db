#include "EditorOptions.h"

#include <CLI/CLI.hpp>

#ifndef MATERIAL_VERSION
#define MATERIAL_VERSION "0.0.0"
#endif

bool EditorOptions::parse(int argc, char** argv, int& exitCode)
{
    CLI::App app("The node-graph material editor.", "material-editor");
    app.set_version_flag("--version", jString("material-editor ") + MATERIAL_VERSION);
    app.add_option("--data-root", dataRoot,
                   "The folder that holds data/ (default: found from PATH, see docs/data-root.md)");
    app.add_option("PATH", path, "A material (.mat) inside the data root to open");
    app.add_option("--screenshot", screenshot,
                   "Open PATH, write a PNG of the window once it is shown and the preview has rendered, and exit");
    app.add_option("--select-node", selectNode, "Select the node of this id once PATH is open")->group("");
    app.add_option("--autosave-seconds", autosaveSeconds,
                   "Write a recovery copy of a modified document every N seconds; 0 turns it off")
        ->check(CLI::NonNegativeNumber);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        exitCode = app.exit(e) == 0 ? kExitSuccess : kExitUsage;
        return false;
    }
    return true;
}
