#pragma once

#include <Backend/InputEvent.h>
#include <Foundation/NSObject.h>

namespace RVCore {

// What the pointer looks like over a part of a view (see NSView::addCursorRect).
class NSCursor : public NSObject {
    RVCORE_CLASS(NSCursor)

public:
    using NSObject::init;
    void init(CursorShape shape) { m_shape = shape; }
    void init() override {} // the arrow

    CursorShape shape() const { return m_shape; }
    bool isEqual(const NSObject& other) const override; // of the same shape
    std::size_t hash() const override { return static_cast<std::size_t>(m_shape); }

private:
    CursorShape m_shape = CursorShape::arrow;
};

} // namespace RVCore
