#include <QuartzCore/DeferredCanvas.h>

namespace RVCore {

// The state that is left was entered either in a step that waits, or on the canvas, where all that waits is then
// part of it.
void DeferredCanvas::restore()
{
    while (m_steps.size() > m_first) {
        const bool isEntered = m_steps.back().kind == Step::Kind::save;
        m_steps.pop_back();
        if (isEntered)
            return;
    }
    if (m_canvas)
        m_canvas->restore();
}

void DeferredCanvas::endTransparencyLayer()
{
    m_steps.resize(m_first); // it brings back transform and clip
    ready().endTransparencyLayer();
}

Canvas& DeferredCanvas::ready()
{
    if (!m_canvas)
        m_canvas = makeCanvas();
    for (std::size_t i = m_first; i < m_steps.size(); ++i) {
        const Step& step = m_steps[i];
        switch (step.kind) {
        case Step::Kind::save:
            m_canvas->save();
            break;
        case Step::Kind::concatenate:
            m_canvas->concatenate(step.transform);
            break;
        case Step::Kind::clip:
            m_canvas->clip(step.shape);
            break;
        }
    }
    m_steps.resize(m_first);
    return *m_canvas;
}

} // namespace RVCore
