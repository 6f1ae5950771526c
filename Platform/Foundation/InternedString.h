#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace RVCore {

// The program's one copy of a text: equal texts have equal addresses, for good. For names, of which a program has
// few, since none is ever freed. Safe on any thread.
const std::string& interned(std::string_view text);

// Stands for such a copy in 24 bits, for the many small objects that have a name. By default for the empty text.
// There is room for 16,777,216 texts; more stop the program.
class ShortName {
public:
    ShortName() = default;
    explicit ShortName(std::string_view text);
    static ShortName numbered(std::uint32_t number); // a number that one has

    std::uint32_t number() const { return m_number; } // below 2 to the power of 24
    const std::string& text() const;
    bool isEmpty() const { return m_number == 0; }

    friend bool operator==(ShortName, ShortName) = default;

private:
    std::uint32_t m_number = 0;
};

} // namespace RVCore
