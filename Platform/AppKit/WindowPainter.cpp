#include <AppKit/NSApplication.h>
#include <AppKit/NSToolbar.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ToolbarView.h>
#include <AppKit/WindowPainter.h>
#include <Backend/Backend.h>

namespace RVCore {

const DamageRegion& WindowPainter::paint(NSWindow& window, CGFloat scale)
{
    const NSApplication& application = NSApplication::shared();
    const Look look{application.effectiveAppearance(), window.isKeyWindow(), application.isActive()};
    if (look != m_look)
        m_compositor.invalidate();
    m_look = look;
    followFocus(window);
    compose(window, m_composer, m_compositor.begin());
    return m_compositor.compose(window.areaSize(), scale);
}

void WindowPainter::paint(NSWindow& window, Canvas& canvas)
{
    ViewComposer composer;
    Composition composition;
    compose(window, composer, composition);
    drawComposition(composition, canvas, &drawContentOf);
}

// A view that gains or loses the focus looks different.
void WindowPainter::followFocus(NSWindow& window)
{
    auto* const view = dynamic_cast<NSView*>(window.firstResponder());
    const auto focused = view ? shared(*view) : nullptr;
    const auto before = m_focused.lock();
    if (focused == before)
        return;
    for (const auto& changed : {before, focused}) {
        if (changed)
            changed->drawingChanged({});
    }
    m_focused = focused;
}

void WindowPainter::compose(NSWindow& window, ViewComposer& composer, Composition& into)
{
    const CGSize area = window.areaSize();
    if (window.isOpaque()) {
        const Appearance appearance = NSApplication::shared().effectiveAppearance();
        into.add(CompositionItem::Kind::fill, shared(window), {}, area).color =
            Backend::shared().controlLook().windowColor(appearance);
    }
    const DispatchTime now = DispatchTime::now();
    const auto addRoot = [&](NSView& root) {
        composer.add(root, CGAffineTransform::translation(0, area.height - root.frame().maxY()), now, into);
    };
    addRoot(*window.contentView());
    if (const auto& toolbar = window.toolbar())
        addRoot(*toolbar->view({}));
}

} // namespace RVCore
