#include "PackageReader.h"

#include "PackageStore.h"
#include "PackageSyntax.h"
#include "mjl.h"

#include <new>

using namespace PackageSyntax;

namespace {

bool startsComment(std::string_view text, size_t pos)
{
    return text[pos] == '#' || (text[pos] == '/' && pos + 1 < text.size() && text[pos + 1] == '/');
}

// Hot loops work on locals: a char load may alias m_pos, which would force
// a store on every byte.
inline size_t scanWhile(std::string_view text, size_t pos, CharFlag flag)
{
    const char* data = text.data();
    const size_t size = text.size();
    while (pos < size && has(data[pos], flag))
        ++pos;
    return pos;
}

jString describeChar(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F)
        return jFormat("byte 0x%02X", byte);
    return jFormat("'%c'", c);
}

jString describeEscape(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F)
        return jFormat("unknown escape: backslash before byte 0x%02X", byte);
    return jFormat("unknown escape '\\%c'", c);
}

} // namespace

PackageReader::PackageReader(std::string_view text, Package& root)
    : m_text(text)
    , m_store(root.store())
{
    m_levels.resize(1);
    m_levels[0].package = &root;
}

bool PackageReader::fail(size_t offset, jString what)
{
    m_error.offset = offset;
    m_error.what = std::move(what);
    return false;
}

inline void PackageReader::skipBlanks()
{
    m_pos = scanWhile(m_text, m_pos, kBlank);
}

void PackageReader::newLine()
{
    m_lineHasContent = false;
    m_commentOwner = nullptr;
}

bool PackageReader::run()
{
    for (;;) {
        skipBlanks();
        if (m_pos == m_text.size())
            break;
        const char c = m_text[m_pos];
        if (c == '\n') {
            ++m_pos;
            newLine();
        } else if (startsComment(m_text, m_pos)) {
            comment();
        } else if (c == '{') {
            if (!openHeldKey())
                return false;
        } else {
            flushHeldKey();
            m_lineHasContent = true;
            if (c == ';') {
                ++m_pos;
                m_commentOwner = nullptr;
            } else if (c == '}') {
                if (!closePackage())
                    return false;
            } else if (!statement()) {
                return false;
            }
        }
    }
    flushHeldKey();
    if (m_depth > 0)
        return fail(level().brace, "unclosed '{'");
    storeEntries(level());
    return true;
}

void PackageReader::storeEntries(Level& level)
{
    Package& package = *level.package;
    package.m_order.assign(m_store, std::span<const Package::EntryKind>(level.order));
    package.m_items.assign(m_store, std::span<PackageItem* const>(level.items));
    package.m_packages.assign(m_store, std::span<Package* const>(level.packages));
    package.m_comments.assign(m_store, std::span<const std::string_view>(level.comments));
    level.order.clear();
    level.items.clear();
    level.packages.clear();
    level.comments.clear();
}

void PackageReader::comment()
{
    const bool fullLine = !m_lineHasContent;
    const std::string_view text = readComment();
    if (!fullLine && m_commentOwner) {
        appendComment(*m_commentOwner, text);
        return;
    }
    flushHeldKey();
    level().order.push_back(Package::EntryKind::Comment);
    level().comments.push_back(text);
}

void PackageReader::appendComment(Package& package, std::string_view text)
{
    if (package.m_comment.empty()) {
        package.m_comment = text;
    } else if (!text.empty()) {
        const std::string_view first = package.m_comment;
        char* joined = m_store.allocateText(first.size() + 1 + text.size());
        std::memcpy(joined, first.data(), first.size());
        joined[first.size()] = ' ';
        std::memcpy(joined + first.size() + 1, text.data(), text.size());
        package.m_comment = { joined, first.size() + 1 + text.size() };
    }
}

// The text after the marker, without one separating space and without
// trailing white space. Leaves m_pos at the end of the line.
std::string_view PackageReader::readComment()
{
    m_pos += m_text[m_pos] == '#' ? 1 : 2;
    if (m_pos < m_text.size() && m_text[m_pos] == ' ')
        ++m_pos;
    const size_t begin = m_pos;
    const size_t newline = m_text.find('\n', m_pos);
    m_pos = newline == std::string_view::npos ? m_text.size() : newline;
    size_t end = m_pos;
    while (end > begin && has(m_text[end - 1], kBlank))
        --end;
    return m_text.substr(begin, end - begin);
}

bool PackageReader::statement()
{
    std::string_view key;
    if (!readKey(key))
        return false;
    m_commentOwner = nullptr;
    m_spans.clear();
    const char* data = m_text.data();
    const size_t size = m_text.size();
    for (;;) {
        size_t pos = m_pos;
        while (pos < size && has(data[pos], kBlank))
            ++pos;
        m_pos = pos;
        if (pos == size || data[pos] == '\n') {
            if (m_spans.empty())
                holdKey(key, {});
            else
                addItem(key, {});
            return true;
        }
        const char c = data[pos];
        if (c == '"') {
            ValueSpan span;
            if (!readQuoted(span) || !checkAfterToken("string"))
                return false;
            m_spans.push_back(span);
            continue;
        }
        if (c == ';' || c == '}') {
            if (c == ';')
                ++m_pos;
            addItem(key, {});
            return true;
        }
        if (c == '{') {
            if (!m_spans.empty())
                return fail(m_pos, "unexpected '{' after a value");
            return openPackage(key, {}, m_pos++);
        }
        if (startsComment(m_text, pos)) {
            const std::string_view text = readComment();
            if (m_spans.empty())
                holdKey(key, text);
            else
                addItem(key, text);
            return true;
        }
        const size_t begin = pos;
        while (pos < size && !has(data[pos], kValueStop))
            ++pos;
        m_pos = pos;
        if (pos < size && data[pos] == '"')
            return fail(pos, "unexpected '\"' inside a value");
        m_spans.push_back({ begin, pos, false });
    }
}

inline bool PackageReader::readKey(std::string_view& key)
{
    if (m_text[m_pos] == '"') {
        ValueSpan span;
        if (!readQuoted(span))
            return false;
        key = decode(span);
    } else {
        const size_t begin = m_pos;
        m_pos = scanWhile(m_text, m_pos, kKeyChar);
        if (m_pos == begin) [[unlikely]]
            return fail(m_pos, "unexpected character " + describeChar(m_text[m_pos]));
        key = { m_text.data() + begin, m_pos - begin };
    }
    return checkAfterToken("key");
}

// A key or quoted value must be followed by white space, the end of the
// line, ';', a brace or a comment.
inline bool PackageReader::checkAfterToken(const char* token)
{
    if (m_pos == m_text.size())
        return true;
    const char c = m_text[m_pos];
    if (has(c, kBlank) || c == '\n') [[likely]]
        return true;
    return checkUnusualAfterToken(token);
}

bool PackageReader::checkUnusualAfterToken(const char* token)
{
    const char c = m_text[m_pos];
    if (c == ';' || c == '{' || c == '}' || startsComment(m_text, m_pos))
        return true;
    return fail(m_pos, jFormat("unexpected character %s after %s", describeChar(c).c_str(), token));
}

bool PackageReader::readQuoted(ValueSpan& span)
{
    const size_t quote = m_pos;
    const char* data = m_text.data();
    const size_t size = m_text.size();
    size_t pos = quote + 1;
    span.begin = pos;
    span.escaped = false;
    while (pos < size) {
        const char c = data[pos];
        if (c == '"') {
            span.end = pos;
            m_pos = pos + 1;
            return true;
        }
        if (c == '\n')
            break;
        if (c == '\\') {
            if (pos + 1 >= size || data[pos + 1] == '\n')
                break;
            const char next = data[pos + 1];
            if (next != '"' && next != '\\' && next != 'n' && next != 't' && next != 'r')
                return fail(pos, describeEscape(next));
            span.escaped = true;
            pos += 2;
            continue;
        }
        ++pos;
    }
    return fail(quote, "unterminated string");
}

// Unescaped values are views of the text; decoded ones go to the storage.
inline std::string_view PackageReader::decode(const ValueSpan& span)
{
    const std::string_view raw(m_text.data() + span.begin, span.end - span.begin);
    if (!span.escaped) [[likely]]
        return raw;
    return unescape(raw);
}

std::string_view PackageReader::unescape(std::string_view raw)
{
    char* out = m_store.allocateText(raw.size());
    size_t length = 0;
    for (size_t i = 0; i < raw.size(); ++i) {
        char c = raw[i];
        if (c == '\\') {
            c = raw[++i];
            c = c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
        }
        out[length++] = c;
    }
    return { out, length };
}

// The item and its values share one allocation.
void PackageReader::addItem(std::string_view key, std::string_view comment)
{
    const size_t count = m_spans.size();
    void* room = m_store.allocate(sizeof(PackageItem) + count * sizeof(std::string_view));
    auto* item = new (room) PackageItem(m_store, key, comment);
    if (count > 0) {
        auto* values = reinterpret_cast<std::string_view*>(item + 1);
        for (size_t i = 0; i < count; ++i)
            values[i] = decode(m_spans[i]);
        item->adoptValues(values, static_cast<uint32_t>(count));
    }
    Level& open = level();
    open.order.push_back(Package::EntryKind::Item);
    open.items.push_back(item);
}

void PackageReader::holdKey(std::string_view key, std::string_view comment)
{
    m_held = true;
    m_heldKey = key;
    m_heldComment = comment;
}

void PackageReader::flushHeldKey()
{
    if (!m_held)
        return;
    m_held = false;
    m_spans.clear();
    addItem(m_heldKey, m_heldComment);
}

bool PackageReader::openHeldKey()
{
    if (!m_held || m_lineHasContent)
        return fail(m_pos, "unexpected '{'");
    m_held = false;
    m_lineHasContent = true;
    return openPackage(m_heldKey, m_heldComment, m_pos++);
}

bool PackageReader::openPackage(std::string_view key, std::string_view comment, size_t bracePos)
{
    if (m_depth >= static_cast<size_t>(mjl::kMaxDepth))
        return fail(bracePos, jFormat("nesting deeper than %d levels", mjl::kMaxDepth));
    auto* package = new (m_store.allocate(sizeof(Package))) Package(m_store, key);
    package->m_comment = comment;
    m_commentOwner = package;
    level().order.push_back(Package::EntryKind::Package);
    level().packages.push_back(package);
    if (++m_depth == m_levels.size())
        m_levels.emplace_back();
    level().package = package;
    level().brace = bracePos;
    return true;
}

bool PackageReader::closePackage()
{
    if (m_depth == 0)
        return fail(m_pos, "unexpected '}'");
    storeEntries(level());
    m_commentOwner = level().package;
    --m_depth;
    ++m_pos;
    return true;
}
