#include <FolderSizes/ReadingControls.h>

namespace FolderSizes {

using namespace RVCore;

namespace {

constexpr CGFloat barWidth = 240;
constexpr CGFloat gap = 12;

} // namespace

Class& ReadingControls::staticClass()
{
    static Class& theClass =
        defineClass<ReadingControls>("FolderSizes.ReadingControls", RVGroupView::staticClass(), [](auto&) {});
    return theClass;
}

void ReadingControls::init(const std::function<void()>& stop)
{
    m_bar = make<NSProgressIndicator>();
    m_bar->setIndeterminate(false);
    m_bar->setMaxValue(1);
    m_bar->setAccessibilityLabel("Part of the folder that has been read");
    autoSetDimension(*m_bar, LayoutDimension::width, barWidth);
    m_stop = makeButton({.title = "Stop"});
    m_stop->setKeyEquivalent(NSKey::escape);
    m_stop->setOnAction(stop);
    init({m_bar, m_stop}, {.orientation = Orientation::vertical, .spacing = gap});
}

void ReadingControls::setFraction(double fraction)
{
    if (m_fraction == fraction)
        return;
    m_fraction = fraction;
    setDoubleValueAnimated(*m_bar, fraction);
}

void ReadingControls::finish()
{
    m_stop->setEnabled(false);
    hideAnimated(*this);
}

} // namespace FolderSizes
