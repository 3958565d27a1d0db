#pragma once

class Autosave;
class EditorMainWindow;
class Package;
class RecoveryFile;

// At start-up: a recovery copy of the document (or of the untitled one)
// written after the document's file asks whether to restore it. Restoring
// makes the copy the document, modified, under the document's own path;
// declining removes the copy; a copy that cannot be read is set aside with
// one warning and never loaded half-way.
class RecoveryPrompt {
public:
    // True when the document was restored from its copy.
    static bool offer(EditorMainWindow& window);

private:
    static bool ask(const RecoveryFile& file);
    static bool restore(EditorMainWindow& window, const RecoveryFile& file, const Package& copy);
    static void set_aside(const RecoveryFile& file, const char* why);
};
