#include "ShaderSource.h"

#include "FileReader.h"
#include "jDir.h"
#include "jLog.h"

#include <cstdlib>
#include <regex>
#include <sstream>

namespace {

constexpr const char* kRoutine = "ShaderSource";

bool isBlank(char c) { return c == ' ' || c == '\t'; }

size_t skipBlanks(const jString& text, size_t at)
{
    while (at < text.size() && isBlank(text[at]))
        ++at;
    return at;
}

// What a line is to the include resolver.
enum class Directive { None, Include, Malformed };

// Recognises `#include "path"` (blanks allowed around '#' and before the
// path; a trailing comment is allowed). Anything else starting with
// "#include" is malformed.
Directive parseInclude(const jString& line, jString& path)
{
    size_t at = skipBlanks(line, 0);
    if (at >= line.size() || line[at] != '#')
        return Directive::None;
    at = skipBlanks(line, at + 1);
    static const jString keyword = "include";
    if (line.compare(at, keyword.size(), keyword) != 0)
        return Directive::None;
    at = skipBlanks(line, at + keyword.size());
    if (at >= line.size() || line[at] != '"')
        return Directive::Malformed;
    const size_t close = line.find('"', at + 1);
    if (close == jString::npos || close == at + 1)
        return Directive::Malformed;
    const size_t rest = skipBlanks(line, close + 1);
    if (rest < line.size() && line.compare(rest, 2, "//") != 0)
        return Directive::Malformed;
    path = line.substr(at + 1, close - at - 1);
    return Directive::Include;
}

// Digits of a log line reference; too long a number maps to no line.
size_t toNumber(const jString& digits)
{
    return digits.size() > 9 ? 0 : static_cast<size_t>(std::strtoul(digits.c_str(), nullptr, 10));
}

jString defineLine(const jString& define)
{
    const size_t equals = define.find('=');
    if (equals == jString::npos)
        return "#define " + define;
    return "#define " + define.substr(0, equals) + " " + define.substr(equals + 1);
}

} // namespace

void ShaderSource::reset()
{
    m_text.clear();
    m_error.clear();
    m_origins.clear();
    m_includes.clear();
    m_included.clear();
}

bool ShaderSource::assemble(const jVector<jString>& lines, const jVector<jString>& defines, bool editor)
{
    reset();
    uint32_t prelude = 0;
    add(kVersionLine, kPrelude, ++prelude);
    for (const jString& define : defines) {
        if (!define.empty())
            add(defineLine(define), kPrelude, ++prelude);
    }
    if (editor)
        add(defineLine(kEditorDefine), kPrelude, ++prelude);

    // Generated lines are numbered by physical line, as `material-tool
    // generate` prints them.
    uint32_t number = 0;
    for (const jString& entry : lines) {
        size_t from = 0;
        do {
            const size_t end = entry.find('\n', from);
            const jString line = entry.substr(from, end == jString::npos ? jString::npos : end - from);
            if (!add_line(line, kGenerated, ++number, 0))
                return false;
            from = end == jString::npos ? entry.size() + 1 : end + 1;
        } while (from < entry.size());
    }
    return true;
}

size_t ShaderSource::physicalLineCount(const jString& entry)
{
    size_t count = 1;
    for (size_t end = entry.find('\n'); end != jString::npos && end + 1 < entry.size(); end = entry.find('\n', end + 1))
        ++count;
    return count;
}

void ShaderSource::add(jString text, const jString& file, uint32_t line)
{
    if (!text.empty() && text.back() == '\r')
        text.pop_back();
    m_text += text;
    m_text += '\n';
    m_origins.push_back({file, line});
}

bool ShaderSource::add_line(const jString& line, const jString& file, uint32_t number, int depth)
{
    jString path;
    switch (parseInclude(line, path)) {
    case Directive::None:
        add(line, file, number);
        return true;
    case Directive::Malformed:
        return fail(jFormat("%s:%u: malformed #include", file.c_str(), number));
    case Directive::Include:
        break;
    }
    return include_file(path, file, number, depth + 1);
}

bool ShaderSource::include_file(const jString& path, const jString& from, uint32_t number, int depth)
{
    if (depth > kMaxIncludeDepth)
        return fail(jFormat("%s:%u: includes nest deeper than %d levels at \"%s\"", from.c_str(), number,
            kMaxIncludeDepth, path.c_str()));
    if (!jDir::isInsideRoot(path))
        return fail(jFormat("%s:%u: include \"%s\" is outside the data root", from.c_str(), number, path.c_str()));
    const jString resolved = jDir::resolveRead(path);
    if (m_included.count(resolved) > 0)
        return true;
    jString text;
    jString reason;
    if (FileReader::read(resolved, FileReader::kDocumentLimit, text, reason) != FileReader::Status::Read)
        return fail(jFormat("%s:%u: can't open include \"%s\": %s", from.c_str(), number, path.c_str(), reason.c_str()));
    m_included.insert(resolved);
    m_includes.push_back(path);
    return add_lines_of(text, path, depth);
}

bool ShaderSource::add_lines_of(const jString& text, const jString& file, int depth)
{
    uint32_t number = 0;
    size_t from = 0;
    while (from < text.size()) {
        size_t end = text.find('\n', from);
        if (end == jString::npos)
            end = text.size();
        if (!add_line(text.substr(from, end - from), file, ++number, depth))
            return false;
        from = end + 1;
    }
    return true;
}

bool ShaderSource::fail(const jString& error)
{
    reset();
    m_error = error;
    jLog::error("%s: %s", kRoutine, m_error.c_str());
    return false;
}

const ShaderSource::Origin* ShaderSource::origin(size_t line) const
{
    if (line < 1 || line > m_origins.size())
        return nullptr;
    return &m_origins[line - 1];
}

jString ShaderSource::locate(size_t line) const
{
    const Origin* found = origin(line);
    if (!found)
        return jFormat("?:%zu", line);
    return jFormat("%s:%u", found->file.c_str(), found->line);
}

namespace {

// glslang and Mesa: "[ERROR: ]<source>:<line>:" or "<source>:<line>(<column>)";
// NVIDIA: "<source>(<line>) :".
const std::regex& colonForm()
{
    static const std::regex form(R"(^((?:ERROR|WARNING): )?([^:\s]*):(\d+)([:(]))");
    return form;
}

const std::regex& parenForm()
{
    static const std::regex form(R"(^(\d+)\((\d+)\)( ?:))");
    return form;
}

} // namespace

bool ShaderSource::parseLogLine(const jString& line, size_t& number, jString& message)
{
    static const std::regex column(R"(^\(\d+\))");
    std::smatch match;
    jString rest;
    if (std::regex_search(line, match, colonForm())) {
        number = toNumber(match[3].str());
        rest = match[4].str() + match.suffix().str();
    } else if (std::regex_search(line, match, parenForm())) {
        number = toNumber(match[2].str());
        rest = match[3].str() + match.suffix().str();
    } else {
        return false;
    }
    rest = std::regex_replace(rest, column, "", std::regex_constants::format_first_only);
    const size_t start = rest.find_first_not_of(": ");
    message = start == jString::npos ? jString() : rest.substr(start);
    return true;
}

jString ShaderSource::translateLog(const jString& log) const
{
    const std::regex& colon = colonForm();
    const std::regex& paren = parenForm();
    jString out;
    std::istringstream in(log);
    jString line;
    while (std::getline(in, line)) {
        std::smatch match;
        if (std::regex_search(line, match, colon)) {
            line = match[1].str() + locate(toNumber(match[3].str())) + match[4].str() + match.suffix().str();
        } else if (std::regex_search(line, match, paren)) {
            line = locate(toNumber(match[2].str())) + match[3].str() + match.suffix().str();
        }
        out += line;
        out += '\n';
    }
    return out;
}
