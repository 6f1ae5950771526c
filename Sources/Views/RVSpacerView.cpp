#include <Common/Misc/GlobalFunctions.h>
#include <Views/RVSpacerView.h>

namespace RVCore {

namespace {

void requireSize(std::string_view operation, CGSize size)
{
    requireLayoutNumber(operation, "size.width", size.width);
    requireLayoutNumber(operation, "size.height", size.height);
}

} // namespace

Class& RVSpacerView::staticClass()
{
    static Class& theClass =
        defineClass<RVSpacerView>("RVCore.RVSpacerView", RVBaseView::staticClass(), [](auto& publish) {
            publish.initializer("initWithSize:", [](RVSpacerView& self, CGSize size) { self.init(size); });
            publish.property("size", &RVSpacerView::size, &RVSpacerView::setSize);
        });
    return theClass;
}

void RVSpacerView::init(CGSize size)
{
    requireSize("RVSpacerView.init", size);
    m_size = size;
    RVBaseView::init(CGRect());
    setContentHuggingPriority(RVLayoutPriorityDefaultLow, NSLayoutConstraintOrientation::horizontal);
    setContentHuggingPriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::vertical);
    setContentCompressionResistancePriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::horizontal);
    setContentCompressionResistancePriority(RVLayoutPriorityDefaultHigh, NSLayoutConstraintOrientation::vertical);
}

void RVSpacerView::init(const CGRect&)
{
    unimplementedInitializer("RVCore.RVSpacerView", "init(frame:)");
}

void RVSpacerView::init(NSCoder&)
{
    notSupportedError();
}

void RVSpacerView::setSize(CGSize size)
{
    requireSize("RVSpacerView.setSize", size);
    m_size = size;
    invalidateIntrinsicContentSize();
}

} // namespace RVCore
