#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace RVCore::LayoutInternal {

using Index = std::uint32_t;
constexpr Index none = std::numeric_limits<Index>::max();

// Makes room for more elements in a vector that may be large, at the cost of a quarter of its size: what is kept for
// long should not be half empty.
template <typename T> void makeRoom(std::vector<T>& vector, std::size_t more)
{
    if (vector.capacity() - vector.size() < more)
        vector.reserve(vector.size() + std::max(more, vector.size() / 4));
}

// Gives back the memory of lists that are empty: what only a build fills should not wait for the next one.
template <typename... T> void releaseIfEmpty(std::vector<T>&... lists)
{
    ((lists.empty() ? std::vector<T>().swap(lists) : void()), ...);
}

// A sum that is exactly zero where the summands cancel but for rounding. What is left of a cancellation would be
// taken for a small amount later, and small amounts count.
inline double sum(double a, double b, double rounding)
{
    const double result = a + b;
    return std::abs(result) <= rounding * std::abs(b) ? 0.0 : result;
}

// A vector of mostly zeros: all its elements, and a list of those that may differ from zero.
class SparseVector {
public:
    void resize(std::size_t size)
    {
        m_values.assign(size, 0.0);
        m_marks.assign(size, false);
        m_indices.clear();
    }
    // Keeps what there is.
    void grow(std::size_t size)
    {
        m_values.resize(size, 0.0);
        m_marks.resize(size, false);
    }
    void add(Index index, double value)
    {
        if (!m_marks[index]) {
            m_marks[index] = true;
            m_indices.push_back(index);
        }
        m_values[index] = sum(m_values[index], value, 1e-14);
    }
    // With a wider notion of what is rounding.
    void addCost(Index index, double value)
    {
        add(index, 0.0);
        m_values[index] = sum(m_values[index], value, 1e-11);
    }
    void set(Index index, double value)
    {
        add(index, 0.0);
        m_values[index] = value;
    }
    void clear()
    {
        for (const Index index : m_indices) {
            m_values[index] = 0.0;
            m_marks[index] = false;
        }
        m_indices.clear();
    }
    double operator[](Index index) const { return m_values[index]; }
    const std::vector<Index>& indices() const { return m_indices; }
    double largest() const
    {
        double result = 0.0;
        for (const Index index : m_indices)
            result = std::max(result, m_values[index] < 0.0 ? -m_values[index] : m_values[index]);
        return result;
    }

private:
    std::vector<double> m_values;
    std::vector<bool> m_marks;
    std::vector<Index> m_indices;
};

// A set of small numbers in order of arrival.
class IndexSet {
public:
    void resize(std::size_t size)
    {
        m_marks.assign(size, false);
        m_indices.clear();
    }
    void grow(std::size_t size) { m_marks.resize(size, false); } // keeps what there is
    void insert(Index index)
    {
        if (m_marks[index])
            return;
        m_marks[index] = true;
        m_indices.push_back(index);
    }
    void clear()
    {
        for (const Index index : m_indices)
            m_marks[index] = false;
        m_indices.clear();
    }
    void releaseIndices() { releaseIfEmpty(m_indices); }
    bool contains(Index index) const { return m_marks[index]; }
    bool isEmpty() const { return m_indices.empty(); }
    const std::vector<Index>& indices() const { return m_indices; }

private:
    std::vector<bool> m_marks;
    std::vector<Index> m_indices;
};

// Hands out steps in ascending order, each once, while later ones are still being added. Few steps live in a
// heap; when they get many, a sweep over all of them is cheaper.
class StepQueue {
public:
    void resize(Index size)
    {
        m_queued.assign(size, 0);
        m_heap.clear();
        reset();
    }
    void push(Index step)
    {
        if (m_queued[step])
            return;
        m_queued[step] = 1;
        if (m_isSweeping)
            return;
        m_heap.push_back(step);
        std::push_heap(m_heap.begin(), m_heap.end(), std::greater<>{});
        if (m_heap.size() > m_queued.size() / 16 + 16) {
            m_isSweeping = true;
            m_heap.clear();
        }
    }
    // The next step, or none; the queue is then empty and ready for use again.
    Index pop()
    {
        if (m_isSweeping) {
            for (; m_next < m_queued.size(); ++m_next) {
                if (m_queued[m_next]) {
                    m_queued[m_next] = 0;
                    return m_next++;
                }
            }
            reset();
            return none;
        }
        if (m_heap.empty()) {
            reset();
            return none;
        }
        std::pop_heap(m_heap.begin(), m_heap.end(), std::greater<>{});
        const Index step = m_heap.back();
        m_heap.pop_back();
        m_queued[step] = 0;
        m_next = step + 1;
        return step;
    }

private:
    void reset()
    {
        m_isSweeping = false;
        m_next = 0;
    }

    std::vector<std::uint8_t> m_queued;
    std::vector<Index> m_heap;
    bool m_isSweeping = false;
    Index m_next = 0;
};

} // namespace RVCore::LayoutInternal
