#pragma once

#include <RVCore.h>

namespace FolderSizes {

// A rounded track, filled from the left as far as its fraction.
class ProportionalBar : public RVCore::RVBaseView {
    RVCORE_CLASS(ProportionalBar)

public:
    void init() override;
    using RVBaseView::init;

    // From 0 to 1.
    void setFraction(double fraction);

    RVCore::CGSize intrinsicContentSize() const override { return {120, 8}; }

private:
    std::shared_ptr<RVCore::NSView> m_fill;
    std::shared_ptr<RVCore::NSLayoutConstraint> m_fillWidth;
};

} // namespace FolderSizes
