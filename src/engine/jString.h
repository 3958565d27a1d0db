#pragma once

#include <cstdarg>
#include <string>
#include <string_view>
#include <vector>

// The engine's 8-bit string and growable array.
using jString = std::string;
template <typename T>
using jVector = std::vector<T>;

// printf-style formatting into a jString.
jString jFormat(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
jString jFormatV(const char* fmt, va_list args);

// Splits text at sep. Empty entries are dropped: "a,,b," gives {"a", "b"}.
jVector<jString> jSplit(std::string_view text, char sep);
// Joins parts with sep between them.
jString jJoin(const jVector<jString>& parts, std::string_view sep);
