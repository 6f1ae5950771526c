#pragma once

#include <FolderSizes/FolderView.h>
#include <FolderSizes/ScrollView.h>

namespace FolderSizes {

// The place of the list in the window. It shows one list after the other and keeps the keys meanwhile: whoever gives
// them to it gives them to the list's chosen row, or where they are held, to the list that comes next.
class ListHost : public RVCore::RVBaseView {
    RVCORE_CLASS(ListHost)

public:
    using RVBaseView::init;

    const std::shared_ptr<FolderView>& list() const { return m_list; } // null at first
    // Puts the list in the place of the present one, of which a picture fades out over it.
    void show(const std::shared_ptr<FolderView>& list);
    // The part of the list that is seen; 0 without a list.
    RVCore::CGFloat offset() const { return m_scroll ? m_scroll->offset() : 0; }
    void setOffset(RVCore::CGFloat offset) { m_scroll->setOffset(offset); }
    void showRow(const RVCore::NSView& row) { m_scroll->showView(row); }

    // Takes the keys from the list, which is about to be covered or replaced.
    void holdKeys();
    // From now on they go to the list again.
    void releaseKeys() { m_holdsKeys = false; }

    bool acceptsFirstResponder() const override { return true; }
    bool canBecomeKeyView() const override { return false; }
    bool becomeFirstResponder() override;

private:
    std::shared_ptr<RVCore::RVScreenshotController> replaceByPicture(RVCore::NSView& list);

    std::shared_ptr<FolderView> m_list;
    std::shared_ptr<ScrollView> m_scroll;
    bool m_holdsKeys = false;
};

} // namespace FolderSizes
