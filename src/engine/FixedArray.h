#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <span>
#include <utility>

// A run of objects made in one allocation, whose count is fixed when it is
// made. The objects never move, so pointers to them stay valid until the
// array is cleared or destroyed; they need neither a copy nor a move
// constructor. Used for the parts of a document node (anchors, variables,
// sub values), which would otherwise cost one allocation each.
template <typename T>
class FixedArray {
public:
    FixedArray() = default;

    // Makes count objects: make(where, index) constructs element index at
    // where (with std::construct_at). When a constructor throws, the
    // elements made so far are destroyed and the exception goes on.
    template <typename Make>
    FixedArray(std::size_t count, Make make)
    {
        if (count == 0)
            return;
        m_data = std::allocator<T>().allocate(count);
        m_capacity = count;
        try {
            for (; m_size < count; ++m_size)
                make(m_data + m_size, m_size);
        } catch (...) {
            clear();
            throw;
        }
    }

    FixedArray(FixedArray&& other) noexcept
        : m_data(std::exchange(other.m_data, nullptr))
        , m_size(std::exchange(other.m_size, 0))
        , m_capacity(std::exchange(other.m_capacity, 0))
    {
    }
    FixedArray& operator=(FixedArray&& other) noexcept
    {
        if (this != &other) {
            clear();
            m_data = std::exchange(other.m_data, nullptr);
            m_size = std::exchange(other.m_size, 0);
            m_capacity = std::exchange(other.m_capacity, 0);
        }
        return *this;
    }
    FixedArray(const FixedArray&) = delete;
    FixedArray& operator=(const FixedArray&) = delete;

    ~FixedArray() { clear(); }

    // Destroys the elements, last first, and frees the room.
    void clear() noexcept
    {
        if (!m_data)
            return;
        std::destroy(std::make_reverse_iterator(m_data + m_size), std::make_reverse_iterator(m_data));
        std::allocator<T>().deallocate(m_data, m_capacity);
        m_data = nullptr;
        m_size = 0;
        m_capacity = 0;
    }

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    T& operator[](std::size_t index) const { return m_data[index]; }
    // The element at index, or null when index is out of range.
    T* at(std::size_t index) const { return index < m_size ? m_data + index : nullptr; }
    T* begin() const { return m_data; }
    T* end() const { return m_data + m_size; }
    std::span<T> view() const { return { m_data, m_size }; }

private:
    T* m_data = nullptr;
    std::size_t m_size = 0;
    // The count the room was allocated for: a constructor that threw
    // leaves fewer elements.
    std::size_t m_capacity = 0;
};
