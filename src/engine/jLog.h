#pragma once

#include "jString.h"

#include <functional>
#include <vector>

// The engine log: one line per call, printf-style. Every line goes to the
// installed sinks; by default that is stderr, with "error: " and "warning: "
// prefixes and plain messages.
namespace jLog {

enum class Level { Message, Warning, Error };

struct Entry {
    Level level;
    jString text;
};

using Sink = std::function<void(Level, const jString&)>;

void error(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
void warning(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
void message(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
void write(Level level, const jString& text);

// Sinks receive every line. Returns a handle for removeSink.
int addSink(Sink sink);
void removeSink(int handle);

// The stderr sink is on by default; --quiet turns off messages and warnings
// (errors still print).
void setStderrEnabled(bool enabled);
void setStderrQuiet(bool quiet);

// Renders a line as the stderr sink prints it ("error: ...", "warning: ...").
jString formatLine(Level level, const jString& text);

// Records every line while alive (and keeps stderr silent if asked), so tests
// can assert the exact texts that were logged.
class Capture {
public:
    explicit Capture(bool silenceStderr = true);
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    const std::vector<Entry>& entries() const { return m_entries; }
    // The captured lines as stderr would print them.
    std::vector<jString> lines() const;
    // All lines joined with '\n' (each line terminated).
    jString text() const;
    void clear() { m_entries.clear(); }
    bool empty() const { return m_entries.empty(); }

private:
    std::vector<Entry> m_entries;
    int m_handle;
    bool m_restoreStderr;
};

} // namespace jLog
