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
    // What follows is laid out once, without the old list and before anything moves, so that no frame is late.
    const auto picture = m_scroll ? replaceByPicture(*m_scroll) : nullptr;
    m_list = list;
    m_scroll = make<ScrollView>(list);
    insertSubview(m_scroll, 0); // below the picture and an overlay
    autoPinEdgesToSuperviewEdges(*m_scroll);
    rootView().layoutSubtreeIfNeeded();
    if (picture)
        hideAnimated(*picture->view(), [picture] { picture->view()->removeFromSuperview(); });
}

std::shared_ptr<RVScreenshotController> ListHost::replaceByPicture(NSView& list)
{
    auto controller = make<RVScreenshotController>(std::static_pointer_cast<NSView>(shared(list)));
    setBackgroundColor(*controller->view(), windowColor()); // the list has no ground of its own
    list.removeFromSuperview();
    insertSubview(controller->view(), 0);
    return controller;
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
