#pragma once

#include <AppKit/ViewNames.h>
#include <LayoutEngine/LayoutEngine.h>

namespace RVCore {

enum class NSLayoutAttribute : std::int8_t;

// "left", "centerX" and so on.
const char* attributeName(NSLayoutAttribute attribute);

// At most three decimals: what rounding does to the last digits is no part of a text.
std::string pointsText(double points);

// The rows of one layout engine in words, for reports. A row is named by its tag (see LayoutTag.h).
class LayoutWords {
public:
    LayoutWords(const NSView& root, const LayoutEngine& engine) : m_names(root), m_engine(engine) {}

    const ViewNames& names() const { return m_names; }

    // What it is for and whose it is: `chain between NSView "b" and NSView "a"`.
    std::string role(std::uint64_t tag) const;
    // What it says, its views in the order in which the role names them: "left = right + 8". A translated mask says
    // how the view follows its superview, which is told in words.
    std::string law(std::uint64_t tag) const;
    float priority(std::uint64_t tag) const;

private:
    LayoutConstraintHandle ownRow(std::uint64_t tag) const;
    bool isStayPut(std::uint64_t tag) const;

    ViewNames m_names;
    const LayoutEngine& m_engine;
};

} // namespace RVCore
