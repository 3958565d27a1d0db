#pragma once

#include "jString.h"

#include <cstdint>
#include <unordered_set>

// Assembles the text of one GLSL program from stored shader lines: the
// version line, the defines, "__MATERAIL_EDITOR__" for the editor, then the
// lines with every #include "path" replaced by the file it names (resolved
// through the data root, each file once per program). Pure text: no GL.
//
// Every assembled line remembers where it came from, so a compiler message
// about assembled line N can be reported as "<file>:<line>" (see locate and
// translateLog). See docs/shader-library.md.
class ShaderSource {
public:
    static constexpr const char* kVersionLine = "#version 410 core";
    static constexpr const char* kEditorDefine = "__MATERAIL_EDITOR__";
    // Files included from the stored lines are at depth 1.
    static constexpr int kMaxIncludeDepth = 16;
    // Origin name of the stored lines.
    static constexpr const char* kGenerated = "generated";
    // Origin name of the version and define lines.
    static constexpr const char* kPrelude = "prelude";

    struct Origin {
        jString file;      // kGenerated, kPrelude, or the include path as written
        uint32_t line = 0; // 1-based line within it
    };

    // Assembles a program. A define "NAME" is written "#define NAME", a
    // define "NAME=VALUE" as "#define NAME VALUE"; empty defines are skipped.
    // A stored line may hold several physical lines separated by "\n". False
    // (error logged and kept in getError(), text empty) when an include is
    // malformed, cannot be read or nests deeper than kMaxIncludeDepth.
    bool assemble(const jVector<jString>& lines, const jVector<jString>& defines, bool editor);

    // How many physical lines one stored line makes in a program: its parts
    // between "\n", a final "\n" closing the last one (so "" and "a\n" are
    // one line each).
    static size_t physicalLineCount(const jString& entry);

    const jString& getText() const { return m_text; }
    const jString& getError() const { return m_error; }
    size_t getLineCount() const { return m_origins.size(); }
    // The included files, as written, in the order of their first inclusion.
    const jVector<jString>& getIncludes() const { return m_includes; }

    // Where assembled line `line` (1-based) came from; null when out of range.
    const Origin* origin(size_t line) const;
    // "<file>:<line>" of assembled line `line`; "?:<line>" when out of range.
    jString locate(size_t line) const;
    // Rewrites the line references of a compiler log ("ERROR: 0:12: ...",
    // "ERROR: /tmp/p.frag:12: ...", "0:12(5): error: ...", "0(12) : error")
    // into locate() form. Other lines are kept as they are.
    jString translateLog(const jString& log) const;
    // Splits one compiler log line of those forms into the assembled line
    // number it names and the message after the reference (a column and the
    // separators dropped: "'x' : undeclared identifier", "error: ..."). False
    // for a line without a reference.
    static bool parseLogLine(const jString& line, size_t& number, jString& message);

private:
    void add(jString text, const jString& file, uint32_t line);
    bool add_lines_of(const jString& text, const jString& file, int depth);
    bool add_line(const jString& line, const jString& file, uint32_t number, int depth);
    bool include_file(const jString& path, const jString& from, uint32_t number, int depth);
    bool fail(const jString& error);
    void reset();

    jString m_text;
    jString m_error;
    jVector<Origin> m_origins;
    jVector<jString> m_includes;
    std::unordered_set<jString> m_included; // resolved paths
};
