#pragma once

#include <string>
#include <unordered_map>

namespace RVCore {

class NSView;

// Names for the views of one tree that are the same in every run. Views are numbered in tree order, the root is 1.
class ViewNames {
public:
    explicit ViewNames(const NSView& root);

    std::size_t numberOf(const NSView& view) const { return m_numbers.at(&view); }
    // NSView "name", and without an identifier NSView #3.
    std::string nameOf(const NSView& view) const;

private:
    void add(const NSView& view);

    std::unordered_map<const NSView*, std::size_t> m_numbers;
};

} // namespace RVCore
