#pragma once

#include "Package.h"

#include <memory>

// Writes a package tree as canonical text: one entry per line, sub-packages
// indented by tabs, tokens quoted only where the reader needs the quotes.
class PackageWriter {
public:
    // The text of root's entries at the top level.
    static jString toText(const Package& root);

private:
    // Bytes a line may be written past its own text (block copies of
    // indentation and short values); ensure() always reserves them.
    static constexpr size_t kSlack = 16;

    explicit PackageWriter(jString& out)
        : m_out(out)
    {
    }

    void write(const Package& root);

    void ensure(size_t bytes)
    {
        if (static_cast<size_t>(m_end - m_cursor) < bytes + kSlack)
            grow(bytes + kSlack);
    }
    void grow(size_t bytes);
    void closeChunk();
    void finish();
    void put(char c) { *m_cursor++ = c; }
    void put(std::string_view text);
    void indent(size_t depth);
    static size_t worstCase(std::string_view text) { return 2 * text.size() + 2; }
    void key(std::string_view text);
    void value(std::string_view text);
    void quoted(std::string_view text);
    void comment(std::string_view text);
    void item(const PackageItem& item, size_t depth);
    void commentLine(std::string_view text, size_t depth);
    void open(const Package& package, size_t depth);

    struct Chunk {
        std::unique_ptr<char[]> text;
        size_t used;
    };
    static constexpr size_t kFirstChunk = 16u << 10;
    static constexpr size_t kLargestChunk = 4u << 20;

    jString& m_out;
    jVector<Chunk> m_chunks;
    size_t m_nextChunk = kFirstChunk;
    char* m_cursor = nullptr;
    char* m_end = nullptr;
};
