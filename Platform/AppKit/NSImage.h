#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#include <Foundation/NSObject.h>

#include <functional>
#include <optional>
#include <vector>

namespace RVCore {

class Canvas;

enum class NSImageScaling : int {
    proportionallyDown = 0, // shrinks to fit, keeps its shape, never grows
    axesIndependently = 1,  // fills the room, whatever becomes of its shape
    none = 2,
    proportionallyUpOrDown = 3, // as large as fits, keeps its shape
};

// A picture with a size in points: pixels, in one or more representations, or a closure that draws it, or (made with
// plain `init` or a size alone) nothing at all.
class NSImage : public NSObject {
    RVCORE_CLASS(NSImage)

public:
    // Draws the picture in the rectangle, whose size may be another than the image's.
    using DrawingHandler = std::function<void(Canvas& canvas, const CGRect& rect)>;

    using NSObject::init;
    // Sizes that are not finite or negative, or no image, raise NSInvalidArgumentException.
    void init(CGSize size);
    void init(const CGImageRef& image, CGSize size);
    void init(CGSize size, DrawingHandler handler);

    CGSize size() const { return m_size; } // in points
    // In the order in which they were added. Each shows the whole picture; an absent one raises
    // NSInvalidArgumentException.
    const std::vector<std::shared_ptr<NSBitmapImageRep>>& representations() const { return m_representations; }
    void addRepresentation(const std::shared_ptr<NSBitmapImageRep>& representation);
    // Of the one that is drawn, which is the one of the most pixels; null when there is none.
    CGImageRef bitmap() const;
    // A template is only a shape: whoever shows it gives it a colour. What a closure draws keeps its own. Views that
    // show the image already follow when they are drawn again. Default no.
    bool isTemplate() const { return m_isTemplate; }
    void setTemplate(bool isTemplate) { m_isTemplate = isTemplate; }

    // Fills the rectangle with the picture, a template in the colour.
    void draw(Canvas& canvas, const CGRect& rect, const CGColor& templateColor) const;

private:
    const NSBitmapImageRep* bestRepresentation() const;

    CGSize m_size;
    std::vector<std::shared_ptr<NSBitmapImageRep>> m_representations;
    DrawingHandler m_handler;
    bool m_isTemplate = false;
};

// The size of an image in this much room.
CGSize scaledImageSize(CGSize image, CGSize room, NSImageScaling scaling);

// The one image of that name, the same object every time: the one that was registered, otherwise <name>@2x.png (two
// pixels to a point) or <name>.png from the folders, in the order in which they were added. Null when there is none
// or the file cannot be read; a name with a slash names nothing.
std::shared_ptr<NSImage> imageNamed(const std::string& name);
// Takes the place of what the name stood for; null makes it stand for nothing that was registered or read. Raises
// NSInvalidArgumentException for an empty name.
void registerImage(const std::string& name, const std::shared_ptr<NSImage>& image);
void addImageFolder(const std::string& path);

} // namespace RVCore
