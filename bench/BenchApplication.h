#pragma once

#include <QApplication>

#include <cstdlib>

// The one QApplication of an editor benchmark, on the offscreen platform
// unless QT_QPA_PLATFORM says otherwise.
inline QApplication& benchApplication(const char* name)
{
    static int argc = 1;
    static char* argv[] = {const_cast<char*>(name), nullptr};
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static QApplication app(argc, argv);
    return app;
}
