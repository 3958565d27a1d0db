#pragma once

#include "jString.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>

// The storage of one package tree: every sub-package, item, entry list and
// text of the tree lives in chunks owned here and is freed with the tree at
// once, never one by one. Nothing handed out moves, so views of stored text
// stay valid while the tree lives; space given up by an edit (a replaced
// value, a removed item) is reclaimed only when the tree is freed or copied.
class PackageStore {
public:
    PackageStore() = default;
    PackageStore(const PackageStore&) = delete;
    PackageStore& operator=(const PackageStore&) = delete;

    // Uninitialised room for bytes, aligned for any entry type of a tree.
    void* allocate(size_t bytes)
    {
        const size_t pad = (kAlign - reinterpret_cast<uintptr_t>(m_cursor) % kAlign) % kAlign;
        if (static_cast<size_t>(m_end - m_cursor) < pad + bytes)
            return allocateInNewChunk(bytes);
        void* room = m_cursor + pad;
        m_cursor += pad + bytes;
        return room;
    }

    template <typename T>
    T* allocateArray(size_t count)
    {
        static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= kAlign);
        return static_cast<T*>(allocate(count * sizeof(T)));
    }

    // A stored copy of text; the empty text needs no room.
    std::string_view copyText(std::string_view text)
    {
        if (text.empty())
            return {};
        char* room = allocateText(text.size());
        std::memcpy(room, text.data(), text.size());
        return { room, text.size() };
    }

    // Room for text, without alignment padding.
    char* allocateText(size_t bytes)
    {
        if (static_cast<size_t>(m_end - m_cursor) < bytes)
            return static_cast<char*>(allocateInNewChunk(bytes));
        char* room = m_cursor;
        m_cursor += bytes;
        return room;
    }

    // Keeps a whole text (a file just read) for the tree to view into.
    std::string_view adoptText(jString text);

private:
    static constexpr size_t kAlign = alignof(void*);
    static constexpr size_t kFirstChunk = 1024;
    static constexpr size_t kLargestChunk = 16u << 20;

    void* allocateInNewChunk(size_t bytes);

    jVector<std::unique_ptr<char[]>> m_chunks;
    jVector<std::unique_ptr<jString>> m_texts;
    char* m_cursor = nullptr;
    char* m_end = nullptr;
    size_t m_nextChunk = kFirstChunk;
};
