#include <FolderSizes/Colors.h>
#include <FolderSizes/ListHost.h>

namespace FolderSizes {

using namespace RVCore;

Class& ListHost::staticClass()
{
    static Class& theClass = defineClass<ListHost>("FolderSizes.ListHost", RVBaseView::staticClass(), [](auto&) {});
    return theClass;
}

void ListHost::show(const std::shared_ptr<FolderView>& list)
{
    const auto before = std::exchange(m_scroll, make<ScrollView>(list));
    m_list = list;
    insertSubview(m_scroll, 0); // below an overlay
    autoPinEdgesToSuperviewEdges(*m_scroll);
    // Laid out before anything moves, so that the first frames are not late.
    rootView().layoutSubtreeIfNeeded();
    if (before)
        fadeOut(before);
}

void ListHost::fadeOut(const std::shared_ptr<NSView>& before)
{
    const auto controller = make<RVScreenshotController>(before);
    const auto picture = controller->view();
    setBackgroundColor(*picture, windowColor()); // the list has no ground of its own, the picture hides another one
    before->removeFromSuperview();
    insertSubview(picture, 1);
    hideAnimated(*picture, [controller, picture] { picture->removeFromSuperview(); });
}

void ListHost::holdKeys()
{
    m_holdsKeys = true;
    if (NSWindow* host = window())
        host->makeFirstResponder(this);
}

bool ListHost::becomeFirstResponder()
{
    if (m_list && !m_holdsKeys)
        m_list->takeKeys();
    return true;
}

} // namespace FolderSizes
