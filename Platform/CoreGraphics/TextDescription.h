#pragma once

#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGGeometry.h>

#include <string>

namespace RVCore {

enum class NSTextAlignment : int { left = 0, right = 1, center = 2, justified = 3, natural = 4 };

enum class NSLineBreakMode : int {
    wordWrapping = 0, // at words, and inside a word that is wider than the line
    charWrapping = 1,
    clipping = 2, // one line, cut at the edge
    truncatingHead = 3,
    truncatingTail = 4, // one line, an ellipsis in place of what does not fit
    truncatingMiddle = 5,
};

struct FontDescription {
    std::string family = {}; // empty for the desktop's own user-interface font
    CGFloat size = 13;       // in points
    bool bold = false;
    bool monospacedDigits = false;

    bool operator==(const FontDescription&) const = default;
};

// Text with everything that decides how it is set. Line feeds start new paragraphs; any script, UTF-8.
struct TextDescription {
    std::string text = {};
    FontDescription font = {};
    CGColor color = {};
    NSTextAlignment alignment = NSTextAlignment::natural;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::clipping;
    int maximumNumberOfLines = 0; // 0 for as many as there are

    // Whether lines break at the width they are given, rather than only at line feeds.
    bool wraps() const
    {
        return lineBreakMode == NSLineBreakMode::wordWrapping || lineBreakMode == NSLineBreakMode::charWrapping;
    }
    bool operator==(const TextDescription&) const = default;
};

// What the text needs when set, whole points.
struct TextMetrics {
    CGSize size;
    CGFloat firstBaseline = 0; // from the top
};

// "First\nsecond" system 13 bold rgba(0, 0, 0, 1), for dumps; always one line.
std::string describe(const TextDescription& text);

} // namespace RVCore
