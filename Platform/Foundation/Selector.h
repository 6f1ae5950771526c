#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace RVCore {

// The name of a message, such as "setVisibilityWithView:visible:". Names are interned: two selectors are equal
// exactly when their names are, and comparing or hashing one costs as much as a pointer. A colon stands for
// each argument. Safe to make on any thread.
class Selector {
public:
    Selector(std::string_view name);
    Selector(const char* name) : Selector(std::string_view(name)) {}

    const std::string& name() const { return *m_name; }
    // The number of colons in the name.
    std::size_t argumentCount() const;

    bool operator==(const Selector&) const = default;

    // The selector of the setter of a property: "frame" gives "setFrame:".
    static Selector setterFor(std::string_view property);

private:
    friend struct std::hash<Selector>;
    const std::string* m_name;
};

} // namespace RVCore

template <> struct std::hash<RVCore::Selector> {
    std::size_t operator()(const RVCore::Selector& selector) const noexcept
    {
        return std::hash<const void*>()(selector.m_name);
    }
};
