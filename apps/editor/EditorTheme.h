#pragma once

class QApplication;

// The editor's look: Qt's Fusion style with a dark palette, so the panels,
// the block tree and the asset strip sit quietly around the dark graph
// canvas instead of framing it in the desktop's light theme.
class EditorTheme {
public:
    static void apply(QApplication& app);
};
