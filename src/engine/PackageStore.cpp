#include "PackageStore.h"

#include <algorithm>
#include <new>
#include <sys/mman.h>

PackageStore::~PackageStore()
{
    for (const Chunk& chunk : m_chunks)
        freeChunk(chunk);
}

PackageStore::Chunk PackageStore::newChunk(size_t size)
{
    if (size < kMappedChunk)
        return { static_cast<char*>(::operator new(size)), size };
    size = (size + kMappedChunk - 1) & ~(kMappedChunk - 1);
    // Map one huge page more than needed and trim, so the chunk starts on a
    // huge page boundary.
    void* mapped = mmap(nullptr, size + kMappedChunk, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    const auto address = reinterpret_cast<uintptr_t>(mapped);
    const uintptr_t aligned = (address + kMappedChunk - 1) & ~(kMappedChunk - 1);
    if (aligned > address)
        munmap(mapped, aligned - address);
    if (const size_t tail = address + kMappedChunk - aligned)
        munmap(reinterpret_cast<void*>(aligned + size), tail);
    madvise(reinterpret_cast<void*>(aligned), size, MADV_HUGEPAGE);
    return { reinterpret_cast<char*>(aligned), size };
}

void PackageStore::freeChunk(const Chunk& chunk)
{
    if (chunk.size < kMappedChunk)
        ::operator delete(chunk.start);
    else
        munmap(chunk.start, chunk.size);
}

// Chunks are aligned for any type, so the first allocation in a chunk needs
// no padding.
void* PackageStore::allocateInNewChunk(size_t bytes)
{
    m_chunks.reserve(m_chunks.size() + 1);
    const Chunk chunk = newChunk(std::max(bytes, m_nextChunk));
    m_chunks.push_back(chunk);
    m_cursor = chunk.start + bytes;
    m_end = chunk.start + chunk.size;
    m_capacity += chunk.size;
    m_nextChunk = std::min(m_nextChunk * 2, kLargestChunk);
    return chunk.start;
}

void PackageStore::expectBytes(size_t bytes)
{
    m_nextChunk = std::max(m_nextChunk, std::min(bytes, 4 * kLargestChunk));
}

std::string_view PackageStore::adoptText(jString text)
{
    m_texts.push_back(std::make_unique<jString>(std::move(text)));
    return *m_texts.back();
}
