#include <AppKit/ButtonLayout.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGFloat gap = 4; // between picture and title

bool isBeside(NSCellImagePosition position)
{
    return position == NSCellImagePosition::imageLeft || position == NSCellImagePosition::imageRight;
}

CGSize fitting(CGSize size, CGSize room)
{
    return {std::clamp(size.width, 0.0, std::max(room.width, 0.0)),
            std::clamp(size.height, 0.0, std::max(room.height, 0.0))};
}

// Whole points, so that text stays on the pixels that it was hinted for.
CGRect centered(CGSize size, const CGRect& room, bool isCentered)
{
    const CGFloat x = isCentered ? std::floor((room.size.width - size.width) / 2) : 0;
    return {{room.minX() + x, room.minY() + std::floor((room.size.height - size.height) / 2)}, size};
}

// What the title leaves of the room along the way that both share, at least as much as the picture would like.
CGSize roomForImage(const ButtonContent& content, CGSize room)
{
    if (isBeside(content.imagePosition))
        return {std::max(room.width - gap - content.title.width, std::min(content.image.width, room.width)),
                room.height};
    return {room.width,
            std::max(room.height - gap - content.title.height, std::min(content.image.height, room.height))};
}

ButtonLayout layoutBeside(const ButtonContent& content, const CGRect& room)
{
    const CGSize image = scaledImageSize(content.image, roomForImage(content, room.size), content.imageScaling);
    const CGSize title = fitting(content.title, {room.size.width - image.width - gap, room.size.height});
    const CGFloat between = title.width > 0 ? gap : 0;
    const CGRect block = centered({image.width + between + title.width, room.size.height}, room, content.isCentered);
    const bool isLeft = content.imagePosition == NSCellImagePosition::imageLeft;
    const CGFloat imageX = isLeft ? block.minX() : block.maxX() - image.width;
    const CGFloat titleX = isLeft ? block.minX() + image.width + between : block.minX();
    return {centered(image, {{imageX, room.minY()}, {image.width, room.size.height}}, true),
            centered(title, {{titleX, room.minY()}, {title.width, room.size.height}}, true)};
}

ButtonLayout layoutStacked(const ButtonContent& content, const CGRect& room)
{
    const CGSize image = scaledImageSize(content.image, roomForImage(content, room.size), content.imageScaling);
    const CGSize title = fitting(content.title, {room.size.width, room.size.height - image.height - gap});
    const CGFloat between = title.height > 0 ? gap : 0;
    const CGRect block = centered({room.size.width, image.height + between + title.height}, room, true);
    const bool isAbove = content.imagePosition == NSCellImagePosition::imageAbove;
    const CGFloat imageY = isAbove ? block.minY() : block.maxY() - image.height;
    const CGFloat titleY = isAbove ? block.minY() + image.height + between : block.minY();
    return {centered(image, {{room.minX(), imageY}, {room.size.width, image.height}}, content.isCentered),
            centered(title, {{room.minX(), titleY}, {room.size.width, title.height}}, content.isCentered)};
}

} // namespace

CGSize naturalSize(const ButtonContent& content)
{
    const CGSize image = content.hasImage() ? content.image : CGSize();
    // Without any content a button is as high as with a title.
    const CGSize title = content.hasTitle() || !content.hasImage() ? content.title : CGSize();
    const CGSize larger{std::max(image.width, title.width), std::max(image.height, title.height)};
    if (!content.hasImage() || !content.hasTitle() || content.imagePosition == NSCellImagePosition::imageOverlaps)
        return larger;
    if (isBeside(content.imagePosition))
        return {image.width + gap + title.width, larger.height};
    return {larger.width, image.height + gap + title.height};
}

ButtonLayout layoutButton(const ButtonContent& content, const CGRect& room)
{
    if (content.hasImage() && content.hasTitle() && content.imagePosition != NSCellImagePosition::imageOverlaps)
        return isBeside(content.imagePosition) ? layoutBeside(content, room) : layoutStacked(content, room);
    ButtonLayout result;
    if (content.hasImage())
        result.image =
            centered(scaledImageSize(content.image, room.size, content.imageScaling), room, content.isCentered);
    if (content.hasTitle())
        result.title = centered(fitting(content.title, room.size), room, content.isCentered);
    return result;
}

} // namespace RVCore
