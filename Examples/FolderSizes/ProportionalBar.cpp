#include <FolderSizes/Colors.h>
#include <FolderSizes/ProportionalBar.h>

namespace FolderSizes {

using namespace RVCore;

Class& ProportionalBar::staticClass()
{
    static Class& theClass =
        defineClass<ProportionalBar>("FolderSizes.ProportionalBar", RVBaseView::staticClass(), [](auto& publish) {
            publish.method("setFraction:", &ProportionalBar::setFraction);
        });
    return theClass;
}

void ProportionalBar::init()
{
    RVBaseView::init();
    setBackgroundColor(*this, trackColor());
    layer()->setCornerRadius(4);
    layer()->setMasksToBounds(true);
    m_fill = makeView(*this);
    setBackgroundColor(*m_fill, barColor());
    m_fill->layer()->setCornerRadius(4);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::bottom})
        autoPinEdgeToSuperviewEdge(*m_fill, edge);
    setFraction(0);
}

void ProportionalBar::setFraction(double fraction)
{
    if (m_fillWidth)
        m_fillWidth->setActive(false);
    m_fillWidth = make<NSLayoutConstraint>(*m_fill, NSLayoutAttribute::width, NSLayoutRelation::equal, this,
                                           NSLayoutAttribute::width, fraction, 0.0);
    m_fillWidth->setIdentifier("fraction");
    m_fillWidth->setActive(true);
}

} // namespace FolderSizes
