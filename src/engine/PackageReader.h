#pragma once

#include "Package.h"

#include <string_view>

class PackageStore;

// Reads package text into an empty root. The tree views the text: it must
// be held by the root's storage (PackageStore::adoptText) and so lives as
// long as the tree. Errors give the byte offset in the text and what was
// found there.
class PackageReader {
public:
    struct Error {
        size_t offset = 0;
        jString what;
    };

    PackageReader(std::string_view text, Package& root);

    bool run();
    const Error& error() const { return m_error; }

private:
    // A value as it appears in the text: the raw characters between the
    // quotes (or of the bare token), and whether escapes must be decoded.
    struct ValueSpan {
        size_t begin;
        size_t end;
        bool escaped;
    };

    // The entries of an open package, collected here and stored in one
    // array per kind at its '}'. Levels are reused, and so is their room.
    struct Level {
        Package* package = nullptr;
        size_t brace = 0; // offset of the '{', for "unclosed" errors
        jVector<Package::EntryKind> order;
        jVector<PackageItem*> items;
        jVector<Package*> packages;
        jVector<std::string_view> comments;
    };

    bool fail(size_t offset, jString what);
    void skipBlanks();
    void newLine();
    bool statement();
    bool readKey(std::string_view& key);
    bool checkAfterToken(const char* token);
    bool checkUnusualAfterToken(const char* token);
    bool readQuoted(ValueSpan& span);
    std::string_view readComment();
    std::string_view decode(const ValueSpan& span);
    std::string_view unescape(std::string_view raw);
    void addItem(std::string_view key, std::string_view comment);
    void holdKey(std::string_view key, std::string_view comment);
    void flushHeldKey();
    bool openHeldKey();
    bool openPackage(std::string_view key, std::string_view comment, size_t bracePos);
    bool closePackage();
    void comment();
    void appendComment(Package& package, std::string_view text);
    void storeEntries(Level& level);
    Level& level() { return m_levels[m_depth]; }

    std::string_view m_text;
    size_t m_pos = 0;
    PackageStore& m_store;
    jVector<Level> m_levels;
    size_t m_depth = 0;
    jVector<ValueSpan> m_spans;
    Error m_error;

    // A key alone on its line: an item with no values, unless a '{' follows
    // on a later line and makes it a package.
    bool m_held = false;
    std::string_view m_heldKey;
    std::string_view m_heldComment;

    bool m_lineHasContent = false;
    // The package whose '{' or '}' is the last thing on the current line: an
    // end-of-line comment belongs to it.
    Package* m_commentOwner = nullptr;
};
