#pragma once

#include <CoreGraphics/TextDescription.h>

#include <string>
#include <vector>

namespace RVCore {

// Text metrics that are the same on every machine, so that tests can work sizes out in their head.
//
//  1. A code point advances by half the font's size, in bold by six tenths of it. East Asian wide and fullwidth
//     ones (emoji among them) advance twice as far, a tab four times; combining marks, format and control characters
//     do not advance at all. A byte that is not UTF-8 counts as one code point. The family makes no difference.
//  2. A line is 1.25 times the font's size high, rounded up; the first baseline is the font's size, rounded up.
//  3. Line feeds start new lines, also at the end. Text that wraps breaks after blanks (space, tab, zero-width
//  space),
//     and inside a word only if the word is wider than a whole line; with char wrapping, after any code point. Code
//     points that do not advance stay with the one before, and a line holds at least one that does.
//  4. Blanks at the end of a line of wrapping text take no room.
//  5. Of more lines than the maximum the first ones are left, and an ellipsis (one code point) follows the last of
//     them, for which as much of it gives way as needed.
//  6. The text's width is its widest line's, but never more than the maximum width; both sides are rounded up.

// The lines as they are set, without what rule 4 ignores.
std::vector<std::string> headlessLines(const TextDescription& text, CGFloat maximumWidth);

// Backend.measureText by these rules.
TextMetrics headlessTextMetrics(const TextDescription& text, CGFloat maximumWidth);

} // namespace RVCore
