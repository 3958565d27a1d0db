#pragma once

#include "jString.h"

// The command line of material-editor:
//   material-editor [--data-root DIR] [PATH] [--screenshot OUT.png]
//                   [--autosave-seconds N]
struct EditorOptions {
    jString dataRoot;
    jString path;
    jString screenshot;
    // Hidden: the id of a node to select once the document is shown (for
    // screenshots of a node's property panel); -1 for none.
    int selectNode = -1;
    // The period of the recovery copy while the document is modified; 0 off.
    int autosaveSeconds = 30;

    // Exit codes.
    static constexpr int kExitSuccess = 0;
    static constexpr int kExitFailure = 1;
    static constexpr int kExitUsage = 2;

    // Parses argv. False when the program should stop at once (help,
    // version or a usage error), with exitCode set.
    bool parse(int argc, char** argv, int& exitCode);
};
