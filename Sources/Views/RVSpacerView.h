#pragma once

#include <Views/RVBaseView.h>

namespace RVCore {

// An empty view that takes up room: its intrinsic content size is the size that it is given. It hugs its content
// at 250 horizontally and at 750 vertically, and resists compression at 750.
class RVSpacerView : public RVBaseView {
    RVCORE_CLASS(RVSpacerView)

public:
    using IsRecycled = std::true_type; // groups have one for each member

    void init() override { init(CGSize()); }
    virtual void init(CGSize size);
    // Not offered; these stop the program.
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;

    // In points; a number that is not finite or above 1e15 raises NSInvalidArgumentException. Every assignment
    // invalidates the intrinsic content size, one of an equal size, too.
    CGSize size() const { return m_size; }
    void setSize(CGSize size);

    CGSize intrinsicContentSize() const override { return m_size; }

private:
    CGSize m_size;
};

} // namespace RVCore
