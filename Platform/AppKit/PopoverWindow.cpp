#include <AppKit/NSApplication.h>
#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/PopoverWindow.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>

#include <numbers>

namespace RVCore {

namespace {

using namespace PopoverMetrics;

// How much of the text's colour is in that of the border.
constexpr double borderStrength = 0.3;

CGColor mixed(const CGColor& from, const CGColor& to, double amount)
{
    return {from.red + (to.red - from.red) * amount, from.green + (to.green - from.green) * amount,
            from.blue + (to.blue - from.blue) * amount, 1};
}

// Box and arrow as one shape; the arrow is the half of a square on its corner that stands out of the box.
void fillOutline(Canvas& canvas, const CGRect& box, CGPoint arrowBase, CGFloat inset, const CGColor& color)
{
    canvas.fill({box.insetBy(inset, inset), cornerRadius - inset}, color);
    const CanvasState state(canvas);
    canvas.concatenate(CGAffineTransform::translation(arrowBase.x, arrowBase.y));
    canvas.concatenate(CGAffineTransform::rotation(std::numbers::pi / 4));
    const CGFloat half = arrowHeight / std::numbers::sqrt2 - inset;
    canvas.fill({{-half, -half, 2 * half, 2 * half}, 0}, color);
}

} // namespace

Class& PopoverFrameView::staticClass()
{
    static Class& theClass = defineClass<PopoverFrameView>("PopoverFrameView", NSView::staticClass(), [](auto&) {});
    return theClass;
}

void PopoverFrameView::setContent(const std::shared_ptr<NSView>& content)
{
    content->setTranslatesAutoresizingMaskIntoConstraints(false);
    addSubview(content);
    for (const NSLayoutAttribute edge :
         {NSLayoutAttribute::left, NSLayoutAttribute::top, NSLayoutAttribute::right, NSLayoutAttribute::bottom}) {
        m_insets.push_back(make<NSLayoutConstraint>(*content, edge, NSLayoutRelation::equal, this, edge, 1, 0));
        m_insets.back()->setActive(true);
    }
}

void PopoverFrameView::setPlacement(const PopoverPlacement& placement)
{
    m_placement = placement;
    const auto arrowAt = [&](NSRectEdge edge) { return placement.edge == edge ? arrowHeight : 0; };
    // The arrow is on the side towards the anchor: at the left where the popover stands at the anchor's right edge.
    m_insets[0]->setConstant(borderWidth + arrowAt(NSRectEdge::maxX));
    m_insets[1]->setConstant(borderWidth + arrowAt(NSRectEdge::minY));
    m_insets[2]->setConstant(-borderWidth - arrowAt(NSRectEdge::minX));
    m_insets[3]->setConstant(-borderWidth - arrowAt(NSRectEdge::maxY));
    setNeedsDisplay(true);
}

CGRect PopoverFrameView::box() const
{
    const CGSize size = frame().size;
    switch (m_placement.edge) {
    case NSRectEdge::minX:
        return {0, 0, size.width - arrowHeight, size.height};
    case NSRectEdge::maxX:
        return {arrowHeight, 0, size.width - arrowHeight, size.height};
    case NSRectEdge::minY:
        return {0, arrowHeight, size.width, size.height - arrowHeight};
    case NSRectEdge::maxY:
        break;
    }
    return {0, 0, size.width, size.height - arrowHeight};
}

// The middle of the arrow's base on the box; the tip is counted from the frame's bottom, this view from its top.
CGPoint PopoverFrameView::arrowBase() const
{
    const CGRect around = box();
    switch (m_placement.edge) {
    case NSRectEdge::minX:
        return {around.maxX(), frame().size.height - m_placement.tip};
    case NSRectEdge::maxX:
        return {around.minX(), frame().size.height - m_placement.tip};
    case NSRectEdge::minY:
        return {m_placement.tip, around.minY()};
    case NSRectEdge::maxY:
        break;
    }
    return {m_placement.tip, around.maxY()};
}

void PopoverFrameView::draw(Canvas& canvas, const CGRect&)
{
    const Appearance appearance = NSApplication::shared().effectiveAppearance();
    ControlLook& look = Backend::shared().controlLook();
    const CGColor ground = look.windowColor(appearance);
    fillOutline(canvas, box(), arrowBase(), 0, mixed(ground, look.textColor(appearance), borderStrength));
    fillOutline(canvas, box(), arrowBase(), borderWidth, ground);
}

Class& PopoverWindow::staticClass()
{
    static Class& theClass = defineClass<PopoverWindow>("PopoverWindow", NSWindow::staticClass(), [](auto&) {});
    return theClass;
}

void PopoverWindow::init(NSPopover& popover, const std::shared_ptr<NSView>& content)
{
    NSWindow::init(CGRect(), NSWindowStyleMask::borderless);
    m_popover = shared(popover);
    m_frameView = make<PopoverFrameView>();
    m_frameView->setContent(content);
    setContentView(m_frameView);
}

void PopoverWindow::place(const PopoverPlacement& placement)
{
    // Asked before every frame: a desktop that answers each move with another frame would never come to rest.
    if (m_placement == placement)
        return;
    m_placement = placement;
    m_frameView->setPlacement(placement);
    setFrame(placement.frame);
}

void PopoverWindow::keyDown(NSEvent& event)
{
    const auto popover = m_popover.lock();
    if (popover && event.charactersIgnoringModifiers() == NSKey::escape)
        popover->performClose();
    else
        NSWindow::keyDown(event);
}

void PopoverWindow::close()
{
    const auto alive = shared(*this);
    NSWindow::close();
    if (const auto popover = m_popover.lock())
        popover->close();
}

NSResponder* PopoverWindow::nextResponder() const
{
    return m_popover.lock().get();
}

} // namespace RVCore
