#pragma once

#include <cstdarg>
#include <string>
#include <vector>

// The engine's 8-bit string and growable array.
using jString = std::string;
template <typename T>
using jVector = std::vector<T>;

// printf-style formatting into a jString.
jString jFormat(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
jString jFormatV(const char* fmt, va_list args);
