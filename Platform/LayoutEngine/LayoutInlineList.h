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

    T* begin() { return isOutside() ? m_outside : m_inline; }
    T* end() { return begin() + m_size; }
    const T* begin() const { return isOutside() ? m_outside : m_inline; }
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
    bool isOutside() const { return m_capacity > N; }
    void grow(std::uint32_t capacity)
    {
        T* data = new T[capacity];
        std::copy(begin(), end(), data);
        release();
        m_outside = data;
        m_capacity = capacity;
    }
    void release()
    {
        if (isOutside())
            delete[] m_outside;
    }
    void take(InlineList& other)
    {
        m_size = std::exchange(other.m_size, 0);
        m_capacity = std::exchange(other.m_capacity, N);
        if (isOutside())
            m_outside = other.m_outside;
        else
            std::copy(other.m_inline, other.m_inline + m_size, m_inline);
    }

    std::uint32_t m_size = 0;
    std::uint32_t m_capacity = N;
    union {
        T m_inline[N]{};
        T* m_outside; // once that was too small
    };
};

} // namespace RVCore::LayoutInternal
