#include <CoreGraphics/Canvas.h>

namespace RVCore {

CanvasState::CanvasState(Canvas& canvas) : m_canvas(canvas)
{
    m_canvas.save();
}

CanvasState::~CanvasState()
{
    m_canvas.restore();
}

} // namespace RVCore
