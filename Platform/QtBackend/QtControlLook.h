#pragma once

#include <Backend/ControlLook.h>

class QPainter;

namespace RVCore {

// Controls as the application's QStyle has them, at 96 dots per inch.
class QtControlLook : public ControlLook {
public:
    CGSize sizeForContent(const ControlDescription& control, CGSize content) override;
    CGRect contentRect(const ControlDescription& control, CGSize size) override;
    CGColor contentColor(const ControlDescription& control) override;
    Appearance desktopAppearance() override;
    CGColor windowColor(Appearance appearance) override;
    CGColor textColor(Appearance appearance) override;
    CGColor accentColor(Appearance appearance) override;
};

// Draws the control in the rectangle, in the painter's coordinates. Where these lie straight on the device, edges are
// moved to the nearest device pixels, and lines are whole pixels wide.
void drawControl(QPainter& painter, const ControlDescription& control, const CGRect& rect);

} // namespace RVCore
