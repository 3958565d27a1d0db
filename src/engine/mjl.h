#pragma once

#include "Package.h"

#include <memory>
#include <string_view>

// Reader and writer of package text files.
//
//   mjl file;
//   if (file.open("data/core/materials/generate/block.cfg", false))
//       Package* root = file.getRoot();
//
// A relative path is resolved through the data root (jDir): reading looks in
// the project root first, then in the bundled root; writing goes to the
// project root. Parse errors are logged as "mjl: <file>:<line>:<column>:
// <what>" and leave nothing open. Files are read through FileReader (regular
// files of at most FileReader::kDocumentLimit bytes); a refused file is
// logged as "mjl: <file>: <reason>". A missing file is not logged (callers
// report it in their own words); getError() tells what went wrong.
class mjl {
public:
    mjl();
    ~mjl();
    mjl(const mjl&) = delete;
    mjl& operator=(const mjl&) = delete;

    // Opens and parses a file. A writable open of a file that does not exist
    // gives an empty root that save() creates.
    bool open(const jString& path, bool writable);
    // Parses text held in memory; name stands for the file in error messages.
    bool parse(std::string_view text, const jString& name = "<memory>");
    void close();

    bool isOpen() const { return m_root != nullptr; }
    bool isWritable() const { return m_writable; }
    Package* getRoot() const { return m_root.get(); }
    // The absolute path of the opened file (empty after parse()).
    const jString& getPath() const { return m_path; }
    const jString& getError() const { return m_error; }

    // Writes the root to the opened path (writable opens only), atomically.
    bool save();
    // Writes the root to another path, atomically; relative paths go to the
    // project root.
    bool saveAs(const jString& path);

    // The canonical text of a package tree (its entries at the top level).
    static jString toText(const Package& root);
    // Writes text to a file atomically: temporary file beside the target,
    // flush, rename. On failure the old file is left byte-identical.
    static bool writeFileAtomic(const jString& absolutePath, std::string_view text, jString* error = nullptr);

    // Deepest sub-package nesting accepted by the reader.
    static constexpr int kMaxDepth = 256;

private:
    bool parseInto(std::unique_ptr<Package> root, std::string_view text, const jString& name);

    std::unique_ptr<Package> m_root;
    jString m_path;
    jString m_error;
    bool m_writable = false;
};
