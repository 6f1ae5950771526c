#pragma once

#include <AppKit/NSView.h>

namespace RVCore {

enum class NSProgressIndicatorStyle : int { bar = 0, spinning = 1 };

enum class NSControlSize : int { regular = 0, small = 1 };

// Shows how far something has come, or only that it goes on: a bar, which is as high as the desktop's style has it
// and as wide as it is made, or a wheel of spokes, 32 points across (small: 16).
//
// Values that the enumerations do not have raise NSInvalidArgumentException.
class NSProgressIndicator : public NSView {
    RVCORE_CLASS(NSProgressIndicator)

public:
    using NSView::init;
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    NSProgressIndicatorStyle style() const { return m_style; } // default bar
    virtual void setStyle(NSProgressIndicatorStyle style);
    NSControlSize controlSize() const { return m_controlSize; } // default regular
    virtual void setControlSize(NSControlSize size);
    // Whether nobody knows how far it has come. Default yes.
    bool isIndeterminate() const { return m_isIndeterminate; }
    virtual void setIndeterminate(bool indeterminate);

    // The value lies between the other two (0 and 100 by default) and is moved there; what is not a number counts as
    // the smaller one. The limits are finite; while the larger one is not larger, nothing has been done yet.
    double doubleValue() const { return m_value; } // default 0
    virtual void setDoubleValue(double value);
    void incrementBy(double delta) { setDoubleValue(m_value + delta); }
    double minValue() const { return m_minimum; }
    virtual void setMinValue(double value);
    double maxValue() const { return m_maximum; }
    virtual void setMaxValue(double value);
    // What has been done, from 0 to 1.
    double fraction() const;

    // Where the moving sign of an indeterminate indicator stands: one time round from 0 to 1. Default 0.
    double animationPhase() const { return m_phase; }
    void setAnimationPhase(double phase);

    bool isFlipped() const override { return true; }
    AccessibleRole accessibilityRole() const override { return AccessibleRole::progressIndicator; }
    std::string accessibilityValue() const override; // "25 %"; empty while it is not known
    CGSize intrinsicContentSize() const override;
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;

private:
    void setLimits(double minimum, double maximum);
    CGFloat wheelSide() const;
    void drawBar(Canvas& canvas);
    void drawWheel(Canvas& canvas);

    double m_value = 0;
    double m_minimum = 0;
    double m_maximum = 100;
    double m_phase = 0;
    NSProgressIndicatorStyle m_style = NSProgressIndicatorStyle::bar;
    NSControlSize m_controlSize = NSControlSize::regular;
    bool m_isIndeterminate = true;
};

} // namespace RVCore
