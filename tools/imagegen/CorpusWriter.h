#pragma once

#include "jString.h"

// Writes the seed corpus of the DDS fuzz target: one small valid file of
// every kind the reader accepts (legacy and DX10 headers, uncompressed and
// BC1-BC3, 2D with mips, cube maps and volumes).
class CorpusWriter {
public:
    // Writes into an absolute folder; false (logged) on the first failure.
    static bool write(const jString& folder);
};
