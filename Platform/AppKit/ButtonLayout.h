#pragma once

#include <AppKit/NSImage.h>

namespace RVCore {

// Where a button's picture lies with regard to its title.
enum class NSCellImagePosition : int {
    noImage = 0,
    imageOnly = 1,
    imageLeft = 2,
    imageRight = 3,
    imageBelow = 4,
    imageAbove = 5,
    imageOverlaps = 6, // the title over the picture
};

// What stands in a button; a side that is 0 stands for something that is not there.
struct ButtonContent {
    CGSize title;
    CGSize image;
    NSCellImagePosition imagePosition = NSCellImagePosition::noImage;
    NSImageScaling imageScaling = NSImageScaling::proportionallyDown;
    bool isCentered = true; // or at the left edge

    bool hasTitle() const { return title.width > 0 && imagePosition != NSCellImagePosition::imageOnly; }
    bool hasImage() const
    {
        return image.width > 0 && image.height > 0 && imagePosition != NSCellImagePosition::noImage;
    }
};

// From the top left corner; empty for what is not there.
struct ButtonLayout {
    CGRect image;
    CGRect title;

    bool operator==(const ButtonLayout&) const = default;
};

// How large the content is with nothing cut or scaled.
CGSize naturalSize(const ButtonContent& content);

// The content in this much room. A title that does not fit gives way to the picture.
ButtonLayout layoutButton(const ButtonContent& content, const CGRect& room);

} // namespace RVCore
