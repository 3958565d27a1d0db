#include "mjl.h"

#include "jDir.h"
#include "jLog.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// ---------------------------------------------------------------------------
// Character classes shared by the reader and the writer, so that whatever the
// writer leaves bare the reader reads back as one token.

enum CharFlag : uint8_t {
    kKeyChar = 1,   // may appear in a bare key
    kValueStop = 2, // ends a bare value
    kBlank = 4,     // white space inside a line
    kEscaped = 8,   // written with a backslash inside quotes
};

constexpr std::array<uint8_t, 256> makeCharTable()
{
    std::array<uint8_t, 256> table{};
    for (int c = 0; c < 256; ++c) {
        const bool alnum = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        // Bytes of multi-byte UTF-8 sequences count as letters.
        if (alnum || c >= 0x80 || c == '_' || c == '.' || c == '-' || c == ':' || c == '/')
            table[c] |= kKeyChar;
    }
    for (unsigned char c : { ' ', '\t', '\r' })
        table[c] |= kBlank | kValueStop;
    for (unsigned char c : { '\n', '"', '{', '}', ';' })
        table[c] |= kValueStop;
    for (unsigned char c : { '"', '\\', '\n', '\t', '\r' })
        table[c] |= kEscaped;
    return table;
}

constexpr std::array<uint8_t, 256> kChars = makeCharTable();

inline bool has(char c, CharFlag flag) { return kChars[static_cast<unsigned char>(c)] & flag; }

constexpr std::string_view kBom = "\xEF\xBB\xBF";

bool startsComment(std::string_view text, size_t pos)
{
    return text[pos] == '#' || (text[pos] == '/' && pos + 1 < text.size() && text[pos + 1] == '/');
}

// ---------------------------------------------------------------------------
// Reader

struct ParseError {
    size_t offset = 0;
    jString what;
};

// A value as it appears in the text: the raw characters between the quotes
// (or of the bare token), and whether escapes must be decoded.
struct ValueSpan {
    size_t begin;
    size_t end;
    bool escaped;
};

// Hot loops work on locals: a char load may alias m_pos, which would force
// a store on every byte.
size_t scanWhile(std::string_view text, size_t pos, CharFlag flag)
{
    const char* data = text.data();
    const size_t size = text.size();
    while (pos < size && has(data[pos], flag))
        ++pos;
    return pos;
}

size_t scanUntil(std::string_view text, size_t pos, CharFlag flag)
{
    const char* data = text.data();
    const size_t size = text.size();
    while (pos < size && !has(data[pos], flag))
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

class Reader {
public:
    Reader(std::string_view text, Package& root)
        : m_text(text)
    {
        m_levels.resize(1);
        m_levels[0].package = &root;
    }

    bool run();
    const ParseError& error() const { return m_error; }

private:
    bool fail(size_t offset, jString what);
    void skipBlanks();
    void newLine();
    bool statement();
    bool readKey(jString& key);
    bool checkAfterToken(const char* token);
    bool readQuoted(ValueSpan& span);
    void readBare(ValueSpan& span);
    jString readComment();
    jString decode(const ValueSpan& span) const;
    void addItem(jString key, jString comment);
    void holdKey(jString key, jString comment);
    void flushHeldKey();
    bool openHeldKey();
    bool openPackage(jString key, jString comment, size_t bracePos);
    bool closePackage();
    void comment();
    static void appendComment(Package& package, jString text);

    // The entries of an open package, collected here and moved into it at
    // its '}' with an exact reserve. Levels are reused, so their capacity is
    // too: growing each package's own vectors entry by entry costs far more.
    struct Level {
        Package* package = nullptr;
        size_t brace = 0; // offset of the '{', for "unclosed" errors
        jVector<Package::EntryKind> order;
        jVector<std::unique_ptr<PackageItem>> items;
        jVector<std::unique_ptr<Package>> packages;
        jVector<jString> comments;
    };
    Level& level() { return m_levels[m_depth]; }
    void moveEntriesIntoPackage(Level& level);

    std::string_view m_text;
    size_t m_pos = 0;
    jVector<Level> m_levels;
    size_t m_depth = 0;
    jVector<ValueSpan> m_spans;
    ParseError m_error;

    // A key alone on its line: an item with no values, unless a '{' follows
    // on a later line and makes it a package.
    bool m_held = false;
    jString m_heldKey;
    jString m_heldComment;

    bool m_lineHasContent = false;
    // The package whose '{' or '}' is the last thing on the current line: an
    // end-of-line comment belongs to it.
    Package* m_commentOwner = nullptr;
};

bool Reader::fail(size_t offset, jString what)
{
    m_error.offset = offset;
    m_error.what = std::move(what);
    return false;
}

void Reader::skipBlanks()
{
    m_pos = scanWhile(m_text, m_pos, kBlank);
}

void Reader::newLine()
{
    m_lineHasContent = false;
    m_commentOwner = nullptr;
}

bool Reader::run()
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
    moveEntriesIntoPackage(level());
    return true;
}

void Reader::moveEntriesIntoPackage(Level& level)
{
    Package& package = *level.package;
    package.reserve(level.items.size(), level.packages.size(), level.comments.size());
    size_t item = 0, child = 0, comment = 0;
    for (const Package::EntryKind kind : level.order) {
        switch (kind) {
        case Package::EntryKind::Item:
            package.addItem(std::move(level.items[item++]));
            break;
        case Package::EntryKind::Package:
            package.addPackage(std::move(level.packages[child++]));
            break;
        case Package::EntryKind::Comment:
            package.addCommentLine(std::move(level.comments[comment++]));
            break;
        }
    }
    level.order.clear();
    level.items.clear();
    level.packages.clear();
    level.comments.clear();
}

void Reader::comment()
{
    const bool fullLine = !m_lineHasContent;
    jString text = readComment();
    if (!fullLine && m_commentOwner) {
        appendComment(*m_commentOwner, std::move(text));
        return;
    }
    flushHeldKey();
    level().order.push_back(Package::EntryKind::Comment);
    level().comments.push_back(std::move(text));
}

void Reader::appendComment(Package& package, jString text)
{
    if (package.getComment().empty())
        package.setComment(std::move(text));
    else if (!text.empty())
        package.setComment(package.getComment() + " " + text);
}

// The text after the marker, without one separating space and without
// trailing white space. Leaves m_pos at the end of the line.
jString Reader::readComment()
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
    return jString(m_text.substr(begin, end - begin));
}

bool Reader::statement()
{
    jString key;
    if (!readKey(key))
        return false;
    m_commentOwner = nullptr;
    m_spans.clear();
    for (;;) {
        skipBlanks();
        if (m_pos == m_text.size() || m_text[m_pos] == '\n') {
            if (m_spans.empty())
                holdKey(std::move(key), {});
            else
                addItem(std::move(key), {});
            return true;
        }
        const char c = m_text[m_pos];
        if (startsComment(m_text, m_pos)) {
            jString text = readComment();
            if (m_spans.empty())
                holdKey(std::move(key), std::move(text));
            else
                addItem(std::move(key), std::move(text));
            return true;
        }
        if (c == ';' || c == '}') {
            if (c == ';')
                ++m_pos;
            addItem(std::move(key), {});
            return true;
        }
        if (c == '{') {
            if (!m_spans.empty())
                return fail(m_pos, "unexpected '{' after a value");
            return openPackage(std::move(key), {}, m_pos++);
        }
        ValueSpan span;
        if (c == '"') {
            if (!readQuoted(span) || !checkAfterToken("string"))
                return false;
        } else {
            readBare(span);
            if (m_pos < m_text.size() && m_text[m_pos] == '"')
                return fail(m_pos, "unexpected '\"' inside a value");
        }
        m_spans.push_back(span);
    }
}

bool Reader::readKey(jString& key)
{
    if (m_text[m_pos] == '"') {
        ValueSpan span;
        if (!readQuoted(span))
            return false;
        key = decode(span);
    } else {
        const size_t begin = m_pos;
        m_pos = scanWhile(m_text, m_pos, kKeyChar);
        if (m_pos == begin)
            return fail(m_pos, "unexpected character " + describeChar(m_text[m_pos]));
        key.assign(m_text.data() + begin, m_pos - begin);
    }
    return checkAfterToken("key");
}

// A key or quoted value must be followed by white space, the end of the
// line, ';', a brace or a comment.
bool Reader::checkAfterToken(const char* token)
{
    if (m_pos == m_text.size())
        return true;
    const char c = m_text[m_pos];
    if (has(c, kBlank) || c == '\n' || c == ';' || c == '{' || c == '}' || startsComment(m_text, m_pos))
        return true;
    return fail(m_pos, jFormat("unexpected character %s after %s", describeChar(c).c_str(), token));
}

bool Reader::readQuoted(ValueSpan& span)
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

void Reader::readBare(ValueSpan& span)
{
    span.begin = m_pos;
    span.escaped = false;
    m_pos = scanUntil(m_text, m_pos, kValueStop);
    span.end = m_pos;
}

jString Reader::decode(const ValueSpan& span) const
{
    const std::string_view raw = m_text.substr(span.begin, span.end - span.begin);
    if (!span.escaped)
        return jString(raw);
    jString out;
    out.reserve(raw.size());
    for (size_t i = 0; i < raw.size(); ++i) {
        char c = raw[i];
        if (c == '\\') {
            c = raw[++i];
            c = c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
        }
        out.push_back(c);
    }
    return out;
}

void Reader::addItem(jString key, jString comment)
{
    jVector<jString> values;
    values.reserve(m_spans.size());
    for (const ValueSpan& span : m_spans)
        values.push_back(decode(span));
    auto item = std::make_unique<PackageItem>(std::move(key), std::move(values));
    if (!comment.empty())
        item->setComment(std::move(comment));
    level().order.push_back(Package::EntryKind::Item);
    level().items.push_back(std::move(item));
}

void Reader::holdKey(jString key, jString comment)
{
    m_held = true;
    m_heldKey = std::move(key);
    m_heldComment = std::move(comment);
}

void Reader::flushHeldKey()
{
    if (!m_held)
        return;
    m_held = false;
    m_spans.clear();
    addItem(std::move(m_heldKey), std::move(m_heldComment));
}

bool Reader::openHeldKey()
{
    if (!m_held || m_lineHasContent)
        return fail(m_pos, "unexpected '{'");
    m_held = false;
    m_lineHasContent = true;
    return openPackage(std::move(m_heldKey), std::move(m_heldComment), m_pos++);
}

bool Reader::openPackage(jString key, jString comment, size_t bracePos)
{
    if (m_depth >= static_cast<size_t>(mjl::kMaxDepth))
        return fail(bracePos, jFormat("nesting deeper than %d levels", mjl::kMaxDepth));
    auto package = std::make_unique<Package>(std::move(key));
    package->setComment(std::move(comment));
    m_commentOwner = package.get();
    level().order.push_back(Package::EntryKind::Package);
    level().packages.push_back(std::move(package));
    if (++m_depth == m_levels.size())
        m_levels.emplace_back();
    level().package = m_commentOwner;
    level().brace = bracePos;
    return true;
}

bool Reader::closePackage()
{
    if (m_depth == 0)
        return fail(m_pos, "unexpected '}'");
    moveEntriesIntoPackage(level());
    m_commentOwner = level().package;
    --m_depth;
    ++m_pos;
    return true;
}

struct Location {
    size_t line = 1;
    size_t column = 1;
};

Location locate(std::string_view text, size_t offset)
{
    Location location;
    size_t lineStart = 0;
    for (size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++location.line;
            lineStart = i + 1;
        }
    }
    location.column = offset - lineStart + 1;
    return location;
}

// ---------------------------------------------------------------------------
// Writer

bool needsQuotes(std::string_view text, bool isKey)
{
    if (text.empty())
        return true;
    if (text[0] == '#' || (text.size() > 1 && text[0] == '/' && text[1] == '/'))
        return true;
    if (isKey) {
        // Written first in a file, it would read back as a byte order mark.
        if (text.starts_with(kBom))
            return true;
        for (char c : text)
            if (!has(c, kKeyChar))
                return true;
    } else {
        for (char c : text)
            if (has(c, kValueStop))
                return true;
    }
    return false;
}

// Writes through a raw cursor: each line reserves its worst case once, then
// copies without further checks.
class Writer {
public:
    explicit Writer(jString& out)
        : m_out(out)
    {
    }

    void write(const Package& root);

private:
    void ensure(size_t bytes)
    {
        if (static_cast<size_t>(m_end - m_cursor) < bytes)
            grow(bytes);
    }
    void grow(size_t bytes);
    // An empty tree never reserves, so there may be no cursor at all.
    void finish() { m_out.resize(m_cursor ? static_cast<size_t>(m_cursor - m_out.data()) : 0); }
    void put(char c) { *m_cursor++ = c; }
    void put(std::string_view text)
    {
        std::memcpy(m_cursor, text.data(), text.size());
        m_cursor += text.size();
    }
    void indent(size_t depth)
    {
        std::memset(m_cursor, '\t', depth);
        m_cursor += depth;
    }
    static size_t worstCase(std::string_view text) { return 2 * text.size() + 2; }
    void token(std::string_view text, bool isKey);
    void quoted(std::string_view text);
    void comment(std::string_view text);
    void item(const PackageItem& item, size_t depth);
    void commentLine(std::string_view text, size_t depth);
    void open(const Package& package, size_t depth);

    jString& m_out;
    char* m_cursor = nullptr;
    char* m_end = nullptr;
};

void Writer::grow(size_t bytes)
{
    const size_t used = m_cursor ? static_cast<size_t>(m_cursor - m_out.data()) : 0;
    m_out.resize(std::max({ 2 * m_out.size(), used + bytes, size_t(4096) }));
    m_cursor = m_out.data() + used;
    m_end = m_out.data() + m_out.size();
}

void Writer::token(std::string_view text, bool isKey)
{
    if (needsQuotes(text, isKey))
        quoted(text);
    else
        put(text);
}

void Writer::quoted(std::string_view text)
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
void Writer::comment(std::string_view text)
{
    char* start = m_cursor;
    put(text);
    std::replace(start, m_cursor, '\n', ' ');
}

void Writer::item(const PackageItem& item, size_t depth)
{
    size_t bytes = depth + worstCase(item.getName()) + item.getComment().size() + 4;
    for (const jString& value : item.getValues())
        bytes += 1 + worstCase(value);
    ensure(bytes);
    indent(depth);
    token(item.getName(), true);
    for (const jString& value : item.getValues()) {
        put(' ');
        token(value, false);
    }
    if (!item.getComment().empty()) {
        put(" # ");
        comment(item.getComment());
    }
    put('\n');
}

void Writer::commentLine(std::string_view text, size_t depth)
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

void Writer::open(const Package& package, size_t depth)
{
    ensure(depth + worstCase(package.getName()) + package.getComment().size() + 6);
    indent(depth);
    token(package.getName(), true);
    put(" {");
    if (!package.getComment().empty()) {
        put(" # ");
        comment(package.getComment());
    }
    put('\n');
}

// Walks the tree with an explicit stack so that depth costs heap, not stack.
void Writer::write(const Package& root)
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

size_t treeDepth(const Package& root)
{
    size_t deepest = 0;
    jVector<std::pair<const Package*, size_t>> pending { { &root, 0 } };
    while (!pending.empty()) {
        const auto [package, depth] = pending.back();
        pending.pop_back();
        deepest = std::max(deepest, depth);
        for (size_t i = 0; i < package->getPackageCount(); ++i)
            pending.push_back({ package->getPackage(i), depth + 1 });
    }
    return deepest;
}

// ---------------------------------------------------------------------------
// Files

bool readWholeFile(const jString& path, jString& out, int& error)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = errno;
        return false;
    }
    struct stat info {};
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        error = S_ISDIR(info.st_mode) ? EISDIR : errno;
        ::close(fd);
        return false;
    }
    out.resize(static_cast<size_t>(info.st_size));
    size_t filled = 0;
    for (;;) {
        if (filled == out.size())
            out.resize(out.size() + 4096); // the file may have grown
        const ssize_t got = ::read(fd, out.data() + filled, out.size() - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            error = errno;
            ::close(fd);
            return false;
        }
        if (got == 0)
            break;
        filled += static_cast<size_t>(got);
    }
    out.resize(filled);
    ::close(fd);
    return true;
}

bool writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

jString directoryOf(const jString& path)
{
    const size_t slash = path.rfind('/');
    if (slash == jString::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Creates a new file beside target with a name no one else uses.
int createTempBeside(const jString& target, jString& tempPath)
{
    static std::atomic<unsigned> counter { 0 };
    const size_t slash = target.rfind('/');
    const jString dir = slash == jString::npos ? jString() : target.substr(0, slash + 1);
    const jString base = slash == jString::npos ? target : target.substr(slash + 1);
    for (int attempt = 0; attempt < 100; ++attempt) {
        tempPath = jFormat("%s.%s.%d.%u.tmp", dir.c_str(), base.c_str(), static_cast<int>(getpid()), counter++);
        const int fd = ::open(tempPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

// The replacement keeps the permissions of the file it replaces.
void copyModeOf(const jString& target, int fd)
{
    struct stat info {};
    if (stat(target.c_str(), &info) == 0)
        fchmod(fd, info.st_mode & 07777);
}

void syncDirectory(const jString& path)
{
    const int fd = ::open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        fsync(fd);
        ::close(fd);
    }
}

} // namespace

// ---------------------------------------------------------------------------

mjl::mjl() = default;
mjl::~mjl() = default;

bool mjl::open(const jString& path, bool writable)
{
    close();
    m_error.clear();
    // A writable open reads what the reader would see (possibly the bundled
    // file) and saves to the project root.
    const jString readPath = jDir::resolveRead(path);
    jString text;
    int error = 0;
    if (!readWholeFile(readPath, text, error)) {
        if (error == ENOENT && writable) {
            m_root = std::make_unique<Package>();
            m_path = jDir::resolveWrite(path);
            m_writable = true;
            return true;
        }
        m_error = jFormat("mjl: %s: %s", path.c_str(), strerror(error));
        if (error != ENOENT && error != ENOTDIR)
            jLog::error("%s", m_error.c_str());
        return false;
    }
    if (!parse(text, path))
        return false;
    m_path = writable ? jDir::resolveWrite(path) : readPath;
    m_writable = writable;
    return true;
}

bool mjl::parse(std::string_view text, const jString& name)
{
    close();
    m_error.clear();
    if (text.substr(0, kBom.size()) == kBom)
        text.remove_prefix(kBom.size());
    auto root = std::make_unique<Package>();
    Reader reader(text, *root);
    if (!reader.run()) {
        const Location at = locate(text, reader.error().offset);
        m_error = jFormat("mjl: %s:%zu:%zu: %s", name.c_str(), at.line, at.column, reader.error().what.c_str());
        jLog::error("%s", m_error.c_str());
        return false;
    }
    m_root = std::move(root);
    return true;
}

void mjl::close()
{
    m_root.reset();
    m_path.clear();
    m_writable = false;
}

bool mjl::save()
{
    if (!m_root || !m_writable || m_path.empty()) {
        m_error = jFormat("mjl: %s: not open for writing", m_path.empty() ? "<memory>" : m_path.c_str());
        jLog::error("%s", m_error.c_str());
        return false;
    }
    if (treeDepth(*m_root) > static_cast<size_t>(kMaxDepth)) {
        m_error = jFormat("mjl: %s: nesting deeper than %d levels", m_path.c_str(), kMaxDepth);
        jLog::error("%s", m_error.c_str());
        return false;
    }
    return writeFileAtomic(m_path, toText(*m_root), &m_error);
}

bool mjl::saveAs(const jString& path)
{
    if (!m_root) {
        m_error = jFormat("mjl: %s: nothing is open", path.c_str());
        jLog::error("%s", m_error.c_str());
        return false;
    }
    m_path = jDir::resolveWrite(path);
    m_writable = true;
    return save();
}

jString mjl::toText(const Package& root)
{
    jString out;
    Writer(out).write(root);
    return out;
}

bool mjl::writeFileAtomic(const jString& absolutePath, std::string_view text, jString* error)
{
    jString tempPath;
    const int fd = createTempBeside(absolutePath, tempPath);
    bool ok = fd >= 0;
    const char* step = "can't create a temporary file";
    if (ok) {
        copyModeOf(absolutePath, fd);
        ok = writeAll(fd, text);
        step = "can't write";
        if (ok) {
            ok = fsync(fd) == 0;
            step = "can't flush";
        }
        const int savedErrno = errno;
        if (::close(fd) != 0 && ok) {
            ok = false;
            step = "can't close";
        } else {
            errno = savedErrno;
        }
        if (ok) {
            ok = ::rename(tempPath.c_str(), absolutePath.c_str()) == 0;
            step = "can't replace the file";
        }
        if (!ok) {
            const int cause = errno;
            ::unlink(tempPath.c_str());
            errno = cause;
        }
    }
    if (!ok) {
        const jString message = jFormat("mjl: %s: %s: %s", absolutePath.c_str(), step, strerror(errno));
        jLog::error("%s", message.c_str());
        if (error)
            *error = message;
        return false;
    }
    syncDirectory(absolutePath);
    return true;
}
