#pragma once

#include <RVCore.h>

namespace FolderSizes {

// What an overlay shows beside its texts while a folder is read: how much of it has been, and a way to stop.
//
//     ▇▇▇▇▇▇▇▇▁▁▁▁▁▁
//         [ Stop ]
class ReadingControls : public RVCore::RVGroupView {
    RVCORE_CLASS(ReadingControls)

public:
    using RVGroupView::init;
    void init(const std::function<void()>& stop); // pressed, or Escape

    // Moves the bar there; from 0 to 1.
    void setFraction(double fraction);
    // Fades away and cannot be used any more.
    void finish();

private:
    std::shared_ptr<RVCore::NSProgressIndicator> m_bar;
    std::shared_ptr<RVCore::NSButton> m_stop;
    double m_fraction = 0;
};

} // namespace FolderSizes
