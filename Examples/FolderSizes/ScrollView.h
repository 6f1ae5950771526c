#pragma once

#include <RVCore.h>

namespace FolderSizes {

// Shows as much of a view as there is room for; the wheel, Page Up and Page Down move it. The view is as wide as this
// one, and at least as high.
//
//     ┌──────────────┐
//     │ content     ▐│  a sign at the right says which part is seen, where it is not all
//     │             ▐│
//     │              │
//     └──────────────┘
class ScrollView : public RVCore::RVBaseView {
    RVCORE_CLASS(ScrollView)

public:
    using RVBaseView::init;
    void init(const std::shared_ptr<RVCore::NSView>& content);

    // How far the content is moved up, in points, from 0 to what lies below. Default 0.
    RVCore::CGFloat offset() const { return m_clip->bounds().minY(); }
    void setOffset(RVCore::CGFloat offset); // clipped to that
    // Moves by as little as shows the view, which is in the content, with some room around it.
    void showView(const RVCore::NSView& view);

    void scrollWheel(RVCore::NSEvent& event) override;
    void keyDown(RVCore::NSEvent& event) override;
    void layout() override;

private:
    RVCore::CGFloat largestOffset() const;

    std::shared_ptr<RVCore::NSView> m_content;
    std::shared_ptr<RVCore::NSView> m_clip;
    std::shared_ptr<RVCore::NSView> m_knob;
};

} // namespace FolderSizes
