#pragma once

#include "jString.h"

#include <cstdint>

// Pieces of JSON text for the command line's --json outputs.
class JsonText {
public:
    // A string literal: quotes, backslashes and control characters escaped,
    // everything else (UTF-8 included) as it is.
    static jString string(const jString& text);
    // The string, or null when it is empty.
    static jString stringOrNull(const jString& text);
    // The number, or null when it is negative (unknown).
    static jString countOrNull(int64_t value);
    static const char* boolean(bool value) { return value ? "true" : "false"; }
};
