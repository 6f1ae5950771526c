#pragma once

#include <RVCore.h>

namespace Contacts {

// Colours to choose one from, in two rows.
class ColorPalette : public RVCore::RVGroupView {
    RVCORE_CLASS(ColorPalette)

public:
    using RVGroupView::init;
    void init() override;

    void setOnChoose(std::function<void(const std::shared_ptr<RVCore::NSColor>&)> closure)
    {
        m_onChoose = std::move(closure);
    }

private:
    void chosen(const RVCore::ObjectRef& sender);

    std::function<void(const std::shared_ptr<RVCore::NSColor>&)> m_onChoose;
};

} // namespace Contacts
