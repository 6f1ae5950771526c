#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace RVCore::LayoutInternal {

// A growing list that never moves what it holds and has hardly any room to spare: records live in blocks of equal
// size. A vector would move all of them at each growth and keep up to half its room empty.
template <typename T> class Blocks {
public:
    std::size_t size() const { return m_size; }
    T& operator[](std::size_t index) { return m_blocks[index / blockSize][index % blockSize]; }
    const T& operator[](std::size_t index) const { return m_blocks[index / blockSize][index % blockSize]; }
    void addOne()
    {
        if (m_size == m_blocks.size() * blockSize)
            m_blocks.push_back(std::make_unique<T[]>(blockSize));
        ++m_size;
    }

private:
    static constexpr std::size_t blockSize = 256;

    std::vector<std::unique_ptr<T[]>> m_blocks;
    std::size_t m_size = 0;
};

} // namespace RVCore::LayoutInternal
