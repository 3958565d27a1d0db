#pragma once

#include "Package.h"
#include "jString.h"

// The host's own package file, material-editor/layout.cfg under the user's
// configuration folder ($XDG_CONFIG_HOME, else ~/.config). The editor
// module keeps its window layout in the sub-package "material_editor"; the
// host keeps its own settings in "host".
class LayoutFile {
public:
    // The file's path for the current environment.
    static jString defaultPath();

    explicit LayoutFile(jString path);

    // Reads the file. A missing or broken file leaves an empty package and
    // gives one warning (see takeWarning): the default layout is used.
    void read();
    // Writes the package atomically, making the folder when needed.
    bool write() const;

    Package& getPackage() { return m_package; }
    const jString& getPath() const { return m_path; }
    // The warning of the last read, once; empty when there was none. The
    // host logs it after its log panel is up.
    jString takeWarning();

private:
    jString m_path;
    Package m_package;
    jString m_warning;
};
