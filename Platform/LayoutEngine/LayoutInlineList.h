#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace RVCore::LayoutInternal {

// A vector that keeps its first N elements in itself. There are several small lists for each variable and form; one
// allocation each would cost more than the work on them. Elements of four bytes make it as small as they allow: the
// address of those outside is kept in the place of the inner ones, and their capacity is a power of two.
template <typename T, std::uint32_t N> class InlineList {
    static_assert(std::is_trivially_copyable_v<T> && N * sizeof(T) >= sizeof(T*));

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

    T* begin() { return isOutside() ? outside() : m_inline; }
    T* end() { return begin() + m_size; }
    const T* begin() const { return isOutside() ? outside() : m_inline; }
    const T* end() const { return begin() + m_size; }
    std::uint32_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    void append(const T& value)
    {
        const T copy = value;
        if (m_size == capacity())
            grow(std::bit_width(m_size));
        begin()[m_size] = copy;
        m_size = (m_size + 1) & largestSize;
    }
    template <typename Range> void assign(const Range& range)
    {
        clear();
        for (const T& value : range)
            append(value);
    }
    template <typename Predicate> void eraseIf(Predicate predicate)
    {
        m_size = std::uint32_t(std::remove_if(begin(), end(), predicate) - begin()) & largestSize;
    }
    void clear() { m_size = 0; }

private:
    static constexpr std::uint32_t largestSize = (1u << 27) - 1; // memory ends before

    bool isOutside() const { return m_capacityBits != 0; }
    std::uint32_t capacity() const { return isOutside() ? 1u << m_capacityBits : N; }
    T* outside() const
    {
        T* data;
        std::memcpy(&data, m_inline, sizeof data);
        return data;
    }
    void setOutside(T* data) { std::memcpy(m_inline, &data, sizeof data); }
    void grow(int capacityBits)
    {
        T* data = new T[std::size_t(1) << capacityBits];
        std::copy(begin(), end(), data);
        release();
        setOutside(data);
        m_capacityBits = std::uint32_t(capacityBits) & 31u;
    }
    void release()
    {
        if (isOutside())
            delete[] outside();
    }
    void take(InlineList& other)
    {
        m_size = other.m_size;
        m_capacityBits = other.m_capacityBits;
        std::memcpy(m_inline, other.m_inline, sizeof m_inline);
        other.m_size = 0;
        other.m_capacityBits = 0;
    }

    std::uint32_t m_size : 27 = 0;
    std::uint32_t m_capacityBits : 5 = 0; // of the elements outside; 0 while there is room inside
    T m_inline[N]{};
};

} // namespace RVCore::LayoutInternal
