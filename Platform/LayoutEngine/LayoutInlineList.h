#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace RVCore::LayoutInternal {

// A vector that keeps its first N elements in itself. There are several small lists for each variable and form;
// one allocation each would cost more than the work on them.
template <typename T, std::uint32_t N> class InlineList {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    InlineList() = default;
    InlineList(InlineList&& other) noexcept { take(other); }
    InlineList& operator=(InlineList&& other) noexcept
    {
        if (this != &other) {
            release();
            take(other);
        }
        return *this;
    }
    ~InlineList() { release(); }

    T* begin() { return m_data ? m_data : m_inline; }
    T* end() { return begin() + m_size; }
    const T* begin() const { return m_data ? m_data : m_inline; }
    const T* end() const { return begin() + m_size; }
    std::uint32_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    const T& front() const { return *begin(); }

    void append(const T& value)
    {
        const T copy = value;
        if (m_size == m_capacity)
            grow(2 * m_capacity);
        begin()[m_size++] = copy;
    }
    template <typename Range> void assign(const Range& range)
    {
        clear();
        for (const T& value : range)
            append(value);
    }
    void erase(T* element)
    {
        std::copy(element + 1, end(), element);
        --m_size;
    }
    template <typename Predicate> void eraseIf(Predicate predicate)
    {
        m_size = std::uint32_t(std::remove_if(begin(), end(), predicate) - begin());
    }
    void clear() { m_size = 0; }

private:
    void grow(std::uint32_t capacity)
    {
        T* data = new T[capacity];
        std::copy(begin(), end(), data);
        delete[] m_data;
        m_data = data;
        m_capacity = capacity;
    }
    void release() { delete[] m_data; }
    void take(InlineList& other)
    {
        m_data = std::exchange(other.m_data, nullptr);
        m_size = std::exchange(other.m_size, 0);
        m_capacity = std::exchange(other.m_capacity, N);
        std::copy(other.m_inline, other.m_inline + N, m_inline);
    }

    T* m_data = nullptr; // instead of m_inline once that was too small
    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = N;
    T m_inline[N]{};
};

} // namespace RVCore::LayoutInternal
