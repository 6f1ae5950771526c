#include <CoreImage/FilterScratch.h>

namespace RVCore {

std::uint16_t* FilterScratch::words(std::size_t count)
{
    if (count > m_capacity) {
        m_words.reset(); // first: both at once may be more than there is
        m_capacity = 0;
        m_words.reset(static_cast<std::uint16_t*>(::operator new(count * sizeof(std::uint16_t), alignment)));
        m_capacity = count;
    }
    return m_words.get();
}

} // namespace RVCore
