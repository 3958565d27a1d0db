#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// Character classes shared by the package reader and writer, so that
// whatever the writer leaves bare the reader reads back as one token.
namespace PackageSyntax {

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

inline constexpr std::array<uint8_t, 256> kChars = makeCharTable();

inline bool has(char c, CharFlag flag) { return kChars[static_cast<unsigned char>(c)] & flag; }

inline constexpr std::string_view kBom = "\xEF\xBB\xBF";

} // namespace PackageSyntax
