#pragma once

#include "jString.h"

#include <cstdint>

// Reads whole files for every loader of the system (package files, shader
// includes, images). Only regular files are read: a pipe, a device, a socket
// or a folder is refused before a byte is read, and so is a file larger than
// the caller's limit. The open does not block (a pipe without a writer would
// hold a plain open for ever) and the read stops at the size the opened
// file had, so a file that grows meanwhile cannot make it run on.
//
//   jString text, reason;
//   if (FileReader::read(absolutePath, FileReader::kDocumentLimit, text, reason) != FileReader::Status::Read)
//       jLog::error("...: %s: %s", path, reason);
class FileReader {
public:
    // Package files: documents, templates, block configuration, includes.
    static constexpr uint64_t kDocumentLimit = uint64_t(256) << 20;
    // Image files.
    static constexpr uint64_t kImageLimit = uint64_t(1) << 30;

    enum class Status {
        Read,    // out holds the whole file
        Missing, // nothing of that name (or a path through a non-folder)
        Refused, // not a regular file, too large, or unreadable: reason says which
    };

    // Reads the file into out (emptied first). reason is set unless Read:
    // "no such file", "a folder, not a regular file", "a pipe, not a regular
    // file", "a device, ...", "N bytes, over the limit of M bytes", or the
    // system's text for an open or read error.
    static Status read(const jString& absolutePath, uint64_t limit, jString& out, jString& reason);
    // The same checks without reading: whether read() would get past them.
    static Status probe(const jString& absolutePath, uint64_t limit, jString& reason);
};
