#include <AppKit/NSTrackingArea.h>
#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Views/RVColorButton.h>

#include <QuartzCore/CALayer.h>

namespace RVCore {

Class& RVColorButton::staticClass()
{
    static Class& theClass =
        defineClass<RVColorButton>("RVCore.RVColorButton", NSButton::staticClass(), [](auto& publish) {
            publish.initializer("initWithColor:",
                                [](RVColorButton& self, const std::shared_ptr<NSColor>& color) { self.init(color); });
            publish.property("color", &RVColorButton::color, &RVColorButton::setColor);
        });
    return theClass;
}

void RVColorButton::init(const std::shared_ptr<NSColor>& color)
{
    if (!color)
        raiseInvalidArgument("RVColorButton.init", "color must not be absent");
    m_arrowView = make<NSImageView>();
    NSButton::init(CGRect());
    setButtonType(NSButtonType::momentaryLight);
    setBordered(false);
    setWantsLayer(true);
    setUpLayer(color->cgColor());
    setTitle("");
    addArrow();
    trackPointer();
}

void RVColorButton::init(const CGRect&)
{
    unimplementedInitializer("RVCore.RVColorButton", "init(frame:)");
}

void RVColorButton::init(NSCoder&)
{
    notSupportedError();
}

void RVColorButton::setUpLayer(const CGColor& color)
{
    const auto& backing = layer();
    if (!backing)
        return;
    backing->setCornerRadius(4.0);
    backing->setMasksToBounds(true);
    backing->setBorderColor(grayColor()->cgColor());
    backing->setBackgroundColor(color);
    backing->setBorderWidth(0.5);
}

void RVColorButton::addArrow()
{
    m_arrowView->setImage(imageNamed("colorPicker-arrow"));
    m_arrowView->setImageAlignment(NSImageAlignment::center);
    m_arrowView->setHidden(true);
    addSubview(m_arrowView);
    autoSetDimensionsToSize(*m_arrowView, arrowSize);
    autoPinEdge(*m_arrowView, LayoutEdge::right, LayoutEdge::right, *this, arrowOffset);
    autoAlignAxis(*m_arrowView, LayoutAxis::horizontal, *this);
}

// The area follows the visible part of the button, so its rectangle does not matter.
void RVColorButton::trackPointer()
{
    using Options = NSTrackingAreaOptions;
    addTrackingArea(make<NSTrackingArea>(
        frame(), Options::activeAlways | Options::mouseEnteredAndExited | Options::inVisibleRect, *this));
}

std::shared_ptr<NSColor> RVColorButton::color() const
{
    const auto background = layer() ? layer()->backgroundColor() : std::nullopt;
    return background ? colorWithCGColor(*background) : nullptr;
}

void RVColorButton::setColor(const std::shared_ptr<NSColor>& color)
{
    if (const auto& backing = layer())
        backing->setBackgroundColor(color ? std::optional(color->cgColor()) : std::nullopt);
}

CGSize RVColorButton::intrinsicContentSize() const
{
    return intrinsicSize;
}

void RVColorButton::mouseEntered(NSEvent& event)
{
    pointerChanged(event, {.inherited = [](RVColorButton& self, NSEvent& e) { self.NSButton::mouseEntered(e); },
                           .hidesArrow = false});
}

void RVColorButton::mouseExited(NSEvent& event)
{
    pointerChanged(event, {.inherited = [](RVColorButton& self, NSEvent& e) { self.NSButton::mouseExited(e); },
                           .hidesArrow = true});
}

void RVColorButton::pointerChanged(NSEvent& event, const PointerChange& change)
{
    change.inherited(*this, event);
    m_arrowView->setHidden(change.hidesArrow);
}

} // namespace RVCore
