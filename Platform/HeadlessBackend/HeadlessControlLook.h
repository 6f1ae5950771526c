#pragma once

#include <Backend/ControlLook.h>

namespace RVCore {

// Control metrics that are the same on every machine, so that tests can work sizes out in their head.
//
//  1. A push button adds 10 points on the left and right of its content and 4 above and below; with text it is at
//     least 60 wide.
//  2. Check box and radio button are a square of 14 points at the left edge, 4 points before the content, and at
//  least
//     as high as that square.
//  3. A progress bar is 12 high and has no width of its own. A focus ring lies in what it is drawn around, and a
//     toolbar is as large as it is made. A tool button adds 6 points on the left and right and 4 above and below.
//  4. Content is black on white, white on black where it is dark, grey where it is disabled; the accent
//     is blue. The desktop is light.
class HeadlessControlLook : public ControlLook {
public:
    CGSize sizeForContent(const ControlDescription& control, CGSize content) override;
    CGRect contentRect(const ControlDescription& control, CGSize size) override;
    CGColor contentColor(const ControlDescription& control) override;
    Appearance desktopAppearance() override { return Appearance::light; }
    CGColor windowColor(Appearance appearance) override;
    CGColor textColor(Appearance appearance) override;
    CGColor accentColor(Appearance appearance) override;
};

} // namespace RVCore
