#include "PackageWriter.h"

#include "PackageSyntax.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

// Values are checked sixteen bytes at a time with SSE2. The block load may
// read past the end of a short value, never past the end of its memory page;
// address sanitizer builds would report those bytes, so they keep the
// byte-by-byte path.
#if defined(__SSE2__) && !defined(__SANITIZE_ADDRESS__)
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MATERIAL_WRITER_SSE2 0
#endif
#endif
#ifndef MATERIAL_WRITER_SSE2
#define MATERIAL_WRITER_SSE2 1
#endif
#else
#define MATERIAL_WRITER_SSE2 0
#endif

#if MATERIAL_WRITER_SSE2
#include <emmintrin.h>
#endif

using namespace PackageSyntax;

namespace {

#if MATERIAL_WRITER_SSE2
// The bytes of a block that end a bare value.
inline unsigned valueStopMask(__m128i bytes)
{
    const auto is = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
    const __m128i stop = _mm_or_si128(_mm_or_si128(_mm_or_si128(is(' '), is('\t')), _mm_or_si128(is('\r'), is('\n'))),
        _mm_or_si128(_mm_or_si128(is('"'), is('{')), _mm_or_si128(is('}'), is(';'))));
    return static_cast<unsigned>(_mm_movemask_epi8(stop));
}
#endif

// A token starting like a comment must be quoted to read back as a token.
bool startsLikeComment(std::string_view text)
{
    return text[0] == '#' || (text.size() > 1 && text[0] == '/' && text[1] == '/');
}

} // namespace

jString PackageWriter::toText(const Package& root)
{
    jString out;
    PackageWriter(out).write(root);
    return out;
}

// The text goes into chunks that never move, so growing copies nothing; the
// result is put together once at the end.
void PackageWriter::grow(size_t bytes)
{
    closeChunk();
    const size_t size = std::max(bytes, m_nextChunk);
    m_nextChunk = std::min(2 * m_nextChunk, kLargestChunk);
    m_chunks.push_back({ std::make_unique_for_overwrite<char[]>(size), 0 });
    m_cursor = m_chunks.back().text.get();
    m_end = m_cursor + size;
}

void PackageWriter::closeChunk()
{
    if (!m_chunks.empty())
        m_chunks.back().used = static_cast<size_t>(m_cursor - m_chunks.back().text.get());
}

void PackageWriter::finish()
{
    closeChunk();
    size_t total = 0;
    for (const Chunk& chunk : m_chunks)
        total += chunk.used;
    // Reserving, unlike resizing, does not fill the text with zeros first.
    m_out.clear();
    m_out.reserve(total);
    for (const Chunk& chunk : m_chunks)
        m_out.append(chunk.text.get(), chunk.used);
}

void PackageWriter::put(std::string_view text)
{
    // An empty view may hold no pointer at all.
    if (!text.empty())
        std::memcpy(m_cursor, text.data(), text.size());
    m_cursor += text.size();
}

// Usual depths are written as one 16-byte block of tabs, which the slack
// every line reserves makes room for.
void PackageWriter::indent(size_t depth)
{
    static constexpr char kTabs[kSlack] = { '\t', '\t', '\t', '\t', '\t', '\t', '\t', '\t', '\t', '\t',
        '\t', '\t', '\t', '\t', '\t', '\t' };
    if (depth <= kSlack)
        std::memcpy(m_cursor, kTabs, kSlack);
    else
        std::memset(m_cursor, '\t', depth);
    m_cursor += depth;
}

// Tokens are copied while their characters are checked; the few that need
// quotes are then written again over the copy.
void PackageWriter::key(std::string_view text)
{
    char* out = m_cursor;
    uint8_t all = kKeyChar;
    for (const char c : text) {
        all &= kChars[static_cast<unsigned char>(c)];
        *out++ = c;
    }
    // Written first in a file, a key starting with a byte order mark would
    // read back as one.
    if (text.empty() || !all || startsLikeComment(text) || text.starts_with(kBom))
        quoted(text);
    else
        m_cursor = out;
}

void PackageWriter::value(std::string_view text)
{
#if MATERIAL_WRITER_SSE2
    // A short value is checked and copied as one 16-byte block: no branch
    // per byte, and none that depends on the value's length.
    const auto address = reinterpret_cast<uintptr_t>(text.data());
    if (text.size() - 1 < 16 && address % 4096 <= 4096 - 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data()));
        const unsigned inValue = (1u << text.size()) - 1;
        if (!(valueStopMask(bytes) & inValue) && !startsLikeComment(text)) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(m_cursor), bytes);
            m_cursor += text.size();
            return;
        }
        quoted(text);
        return;
    }
#endif
    char* out = m_cursor;
    uint8_t any = 0;
    for (const char c : text) {
        any |= kChars[static_cast<unsigned char>(c)];
        *out++ = c;
    }
    if (text.empty() || (any & kValueStop) || startsLikeComment(text))
        quoted(text);
    else
        m_cursor = out;
}

void PackageWriter::quoted(std::string_view text)
{
    put('"');
    size_t run = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (!has(c, kEscaped))
            continue;
        put(text.substr(run, i - run));
        put('\\');
        put(c == '\n' ? 'n' : c == '\t' ? 't' : c == '\r' ? 'r' : c);
        run = i + 1;
    }
    put(text.substr(run));
    put('"');
}

// Comment text runs to the end of its line, so a line feed becomes a space
// (the reader ends lines at line feeds only).
void PackageWriter::comment(std::string_view text)
{
    char* start = m_cursor;
    put(text);
    std::replace(start, m_cursor, '\n', ' ');
}

// Each line reserves its worst case once, then copies without checks.
void PackageWriter::item(const PackageItem& item, size_t depth)
{
    size_t bytes = depth + worstCase(item.getName()) + item.getComment().size() + 4;
    for (const std::string_view value : item.getValues())
        bytes += 1 + worstCase(value);
    ensure(bytes);
    indent(depth);
    key(item.getName());
    for (const std::string_view text : item.getValues()) {
        put(' ');
        value(text);
    }
    if (!item.getComment().empty()) {
        put(" # ");
        comment(item.getComment());
    }
    put('\n');
}

void PackageWriter::commentLine(std::string_view text, size_t depth)
{
    ensure(depth + text.size() + 3);
    indent(depth);
    put('#');
    if (!text.empty()) {
        put(' ');
        comment(text);
    }
    put('\n');
}

void PackageWriter::open(const Package& package, size_t depth)
{
    ensure(depth + worstCase(package.getName()) + package.getComment().size() + 6);
    indent(depth);
    key(package.getName());
    put(" {");
    if (!package.getComment().empty()) {
        put(" # ");
        comment(package.getComment());
    }
    put('\n');
}

// Walks the tree with an explicit stack so that depth costs heap, not stack.
void PackageWriter::write(const Package& root)
{
    struct Frame {
        const Package* package;
        size_t entry = 0, item = 0, child = 0, comment = 0;
    };
    if (!root.getComment().empty())
        commentLine(root.getComment(), 0);
    jVector<Frame> stack;
    stack.push_back({ &root });
    while (!stack.empty()) {
        Frame& frame = stack.back();
        const size_t depth = stack.size() - 1;
        const Package& package = *frame.package;
        if (frame.entry == package.getOrder().size()) {
            stack.pop_back();
            if (depth > 0) {
                ensure(depth + 1);
                indent(depth - 1);
                put("}\n");
            }
            continue;
        }
        switch (package.getOrder()[frame.entry++]) {
        case Package::EntryKind::Item:
            item(*package.getItem(frame.item++), depth);
            break;
        case Package::EntryKind::Comment:
            commentLine(package.getCommentLine(frame.comment++), depth);
            break;
        case Package::EntryKind::Package: {
            const Package* child = package.getPackage(frame.child++);
            open(*child, depth);
            stack.push_back({ child }); // invalidates frame
            break;
        }
        }
    }
    finish();
}
