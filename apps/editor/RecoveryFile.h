#pragma once

#include "jString.h"

// Where the recovery copy of a document lives: the user's state folder
// ($XDG_STATE_HOME, else ~/.local/state) under material-editor/recovery/,
// named after the document's root-relative path with "/" written "%2F" and
// "%" written "%25" (so that every path has its own name), or "untitled".
class RecoveryFile {
public:
    static constexpr const char* kUntitled = "untitled";
    static constexpr const char* kSetAsideSuffix = ".broken";

    // documentPath: root-relative, empty for a document without a file.
    explicit RecoveryFile(const jString& documentPath);

    static jString folder();
    static jString nameFor(const jString& documentPath);

    const jString& getPath() const { return m_path; }
    const jString& getDocumentPath() const { return m_document; }
    bool exists() const;
    // Written after the document's file was (always, when it has none).
    bool isNewerThanDocument() const;
    void remove() const;
    // Renamed with kSetAsideSuffix beside it, replacing an older one.
    void setAside() const;

private:
    jString m_document;
    jString m_path;
};
