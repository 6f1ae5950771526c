#include <Common/Misc/GlobalFunctions.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Views/RVIntrinsicView.h>

namespace RVCore {

namespace {

void requireView(std::string_view operation, const std::shared_ptr<NSView>& view)
{
    if (!view)
        raiseInvalidArgument(operation, "view must not be absent");
}

} // namespace

Class& RVIntrinsicView::staticClass()
{
    static Class& theClass =
        defineClass<RVIntrinsicView>("RVCore.RVIntrinsicView", RVSpacerView::staticClass(), [](auto& publish) {
            publish.initializer("initWithView:size:", [](RVIntrinsicView& self, const std::shared_ptr<NSView>& view,
                                                         CGSize size) { self.init(view, size); });
            publish.property("wrappedView", &RVIntrinsicView::wrappedView, &RVIntrinsicView::setWrappedView);
        });
    return theClass;
}

void RVIntrinsicView::init(const std::shared_ptr<NSView>& view, CGSize size)
{
    requireView("RVIntrinsicView.init", view);
    m_wrappedView = view;
    RVSpacerView::init(size);
    addSubview(m_wrappedView);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::bottom, LayoutEdge::right})
        autoPinEdgeToSuperviewEdge(*m_wrappedView, edge, 0, NSLayoutRelation::greaterThanOrEqual);
}

void RVIntrinsicView::init(CGSize)
{
    unimplementedInitializer("RVCore.RVIntrinsicView", "init(size:)");
}

void RVIntrinsicView::init(const CGRect&)
{
    unimplementedInitializer("RVCore.RVIntrinsicView", "init(frame:)");
}

void RVIntrinsicView::init(NSCoder&)
{
    notSupportedError();
}

void RVIntrinsicView::setWrappedView(const std::shared_ptr<NSView>& view)
{
    requireView("RVIntrinsicView.setWrappedView", view);
    m_wrappedView = view;
}

} // namespace RVCore
