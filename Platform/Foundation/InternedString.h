#pragma once

#include <string>
#include <string_view>

namespace RVCore {

// The program's one copy of a text: equal texts have equal addresses, for good. For names, of which a program has
// few, since none is ever freed. Safe on any thread.
const std::string& interned(std::string_view text);

} // namespace RVCore
