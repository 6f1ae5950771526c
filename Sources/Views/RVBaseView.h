#pragma once

#include <AppKit/NSView.h>

namespace RVCore {

// A view whose origin is at the top left corner; the base of the framework's views. It can be archived, they cannot.
class RVBaseView : public NSView {
    RVCORE_CLASS(RVBaseView)

public:
    using NSView::init;

    bool isFlipped() const override { return true; }
};

} // namespace RVCore
