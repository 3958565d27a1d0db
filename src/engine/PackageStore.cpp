#include "PackageStore.h"

#include <algorithm>

// Chunks come from operator new[], aligned for any type, so the first
// allocation in a chunk needs no padding.
void* PackageStore::allocateInNewChunk(size_t bytes)
{
    if (bytes > m_nextChunk) {
        // A block larger than a chunk (the text of a whole file) gets one of
        // its own, and the current chunk keeps its room.
        m_chunks.push_back(std::make_unique_for_overwrite<char[]>(bytes));
        return m_chunks.back().get();
    }
    const size_t size = m_nextChunk;
    m_chunks.push_back(std::make_unique_for_overwrite<char[]>(size));
    char* start = m_chunks.back().get();
    m_cursor = start + bytes;
    m_end = start + size;
    m_nextChunk = std::min(m_nextChunk * 2, kLargestChunk);
    return start;
}

std::string_view PackageStore::adoptText(jString text)
{
    m_texts.push_back(std::make_unique<jString>(std::move(text)));
    return *m_texts.back();
}
