#include "jLog.h"

#include <cstdio>
#include <map>

namespace jLog {
namespace {

struct LogState {
    std::map<int, Sink> sinks;
    int nextHandle = 1;
    int silenced = 0;
    bool stderrEnabled = true;
    bool stderrQuiet = false;
};

LogState& state()
{
    static LogState s;
    return s;
}

void writeV(Level level, const char* fmt, va_list args)
{
    write(level, jFormatV(fmt, args));
}

} // namespace

jString formatLine(Level level, const jString& text)
{
    switch (level) {
    case Level::Error: return "error: " + text;
    case Level::Warning: return "warning: " + text;
    case Level::Message: break;
    }
    return text;
}

void write(Level level, const jString& text)
{
    LogState& s = state();
    if (s.stderrEnabled && s.silenced == 0 && (!s.stderrQuiet || level == Level::Error)) {
        const jString line = formatLine(level, text) + "\n";
        std::fwrite(line.data(), 1, line.size(), stderr);
    }
    // Copy the handles first: a sink may add or remove sinks while it runs.
    std::vector<int> handles;
    handles.reserve(s.sinks.size());
    for (const auto& [handle, sink] : s.sinks)
        handles.push_back(handle);
    for (int handle : handles) {
        auto it = s.sinks.find(handle);
        if (it != s.sinks.end())
            it->second(level, text);
    }
}

void error(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    writeV(Level::Error, fmt, args);
    va_end(args);
}

void warning(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    writeV(Level::Warning, fmt, args);
    va_end(args);
}

void message(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    writeV(Level::Message, fmt, args);
    va_end(args);
}

int addSink(Sink sink)
{
    LogState& s = state();
    const int handle = s.nextHandle++;
    s.sinks.emplace(handle, std::move(sink));
    return handle;
}

void removeSink(int handle) { state().sinks.erase(handle); }

void setStderrEnabled(bool enabled) { state().stderrEnabled = enabled; }

void setStderrQuiet(bool quiet) { state().stderrQuiet = quiet; }

Capture::Capture(bool silenceStderr)
    : m_handle(addSink([this](Level level, const jString& text) { m_entries.push_back({level, text}); }))
    , m_restoreStderr(silenceStderr)
{
    if (silenceStderr)
        ++state().silenced;
}

Capture::~Capture()
{
    removeSink(m_handle);
    if (m_restoreStderr)
        --state().silenced;
}

std::vector<jString> Capture::lines() const
{
    std::vector<jString> out;
    out.reserve(m_entries.size());
    for (const Entry& e : m_entries)
        out.push_back(formatLine(e.level, e.text));
    return out;
}

jString Capture::text() const
{
    jString out;
    for (const Entry& e : m_entries)
        out += formatLine(e.level, e.text) + "\n";
    return out;
}

} // namespace jLog
