#include <Foundation/Stop.h>

#include <QImage>
#include <QPainter>
#include <QtBackend/QtCanvas.h>
#include <QtBackend/QtControlLook.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtImage.h>
#include <QtBackend/QtPixelGrid.h>
#include <QtBackend/QtText.h>

#include <algorithm>

namespace RVCore {

namespace {

void configure(QPainter& painter)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
}

} // namespace

// Without an image for what is opaque as a whole, to which composing first makes no difference.
struct QtCanvas::Layer {
    CGFloat alpha = 1;
    QPoint origin; // of the image, in the device's pixels
    QImage image;
    std::unique_ptr<QPainter> painter; // after the image: it ends first
};

QtCanvas::QtCanvas(QPainter& painter) : m_painter(&painter), m_outermost(&painter)
{
    configure(painter);
    painter.resetTransform();
    m_fromDevice = painter.deviceTransform().inverted();
}

QtCanvas::~QtCanvas()
{
    // Painting that an exception left half done.
    for (; !m_scopes.empty(); m_scopes.pop_back()) {
        if (m_scopes.back() && m_scopes.back()->painter) {
            m_scopes.back()->painter->end();
            m_scopes.back()->painter.reset();
        }
        innermostPainter().restore();
    }
}

QPainter& QtCanvas::innermostPainter() const
{
    const auto layer = std::find_if(m_scopes.rbegin(), m_scopes.rend(),
                                    [](const std::unique_ptr<Layer>& scope) { return scope && scope->painter; });
    return layer == m_scopes.rend() ? *m_outermost : *(*layer)->painter;
}

void QtCanvas::save()
{
    m_painter->save();
    m_scopes.push_back(nullptr);
}

void QtCanvas::restore()
{
    if (m_scopes.empty() || m_scopes.back())
        fatalError("Canvas.restore: no save to match");
    m_scopes.pop_back();
    m_painter->restore();
}

void QtCanvas::concatenate(const CGAffineTransform& transform)
{
    m_painter->setWorldTransform(toQTransform(transform), true);
}

void QtCanvas::clip(const RoundedRect& shape)
{
    const RoundedRect aligned = alignedToDevice(m_painter->deviceTransform(), shape);
    // An empty path would mean no clip at all.
    if (aligned.rect.isEmpty())
        m_painter->setClipRect(QRectF(0, 0, 0, 0), Qt::IntersectClip);
    else if (aligned.radius <= 0)
        m_painter->setClipRect(toQRectF(aligned.rect), Qt::IntersectClip);
    else
        m_painter->setClipPath(toQPainterPath(aligned), Qt::IntersectClip);
}

void QtCanvas::fill(const RoundedRect& shape, const CGColor& color)
{
    m_painter->fillPath(toQPainterPath(alignedToDevice(m_painter->deviceTransform(), shape)), toQColor(color));
}

void QtCanvas::strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color)
{
    if (width <= 0)
        return;
    const QTransform toDevice = m_painter->deviceTransform();
    const RoundedRect outer = alignedToDevice(toDevice, shape);
    const CGSize line = lineAlignedToDevice(toDevice, width);
    // The shape without what lies further inside than the line reaches.
    QPainterPath path = toQPainterPath(outer);
    path.setFillRule(Qt::OddEvenFill);
    const CGSize size = outer.rect.size;
    const CGFloat radius = std::min({outer.radius, size.width / 2, size.height / 2}) - line.width;
    path.addPath(toQPainterPath({outer.rect.insetBy(line.width, line.height), std::max(radius, 0.0)}));
    m_painter->fillPath(path, toQColor(color));
}

void QtCanvas::drawUpright(const CGRect& rect, const std::function<void()>& draw)
{
    const QTransform transform = m_painter->worldTransform();
    if (transform.determinant() >= 0) {
        draw();
        return;
    }
    // Mirrored: mirror it back inside its rectangle, about the axis that leaves text running to the right.
    const bool mirrorsVertically = transform.m11() >= 0;
    m_painter->save();
    m_painter->translate(rect.midX(), rect.midY());
    m_painter->scale(mirrorsVertically ? 1 : -1, mirrorsVertically ? -1 : 1);
    m_painter->translate(-rect.midX(), -rect.midY());
    draw();
    m_painter->restore();
}

void QtCanvas::drawText(const TextDescription& text, const CGRect& rect)
{
    drawUpright(rect, [&] { RVCore::drawText(*m_painter, text, rect); });
}

void QtCanvas::drawImage(const CGImage& image, const CGRect& rect)
{
    drawUpright(rect, [&] { drawPixels(*m_painter, toQImage(image), rect); });
}

void QtCanvas::drawMask(const CGImage& mask, const CGRect& rect, const CGColor& color)
{
    QImage colored = toQImage(mask).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&colored);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(colored.rect(), toQColor(color));
    painter.end();
    drawUpright(rect, [&] { drawPixels(*m_painter, colored, rect); });
}

void QtCanvas::drawControl(const ControlDescription& control, const CGRect& rect)
{
    drawUpright(rect, [&] { RVCore::drawControl(*m_painter, control, rect); });
}

void QtCanvas::beginTransparencyLayer(CGFloat alpha)
{
    m_painter->save();
    Layer& layer = *m_scopes.emplace_back(std::make_unique<Layer>());
    layer.alpha = std::clamp(alpha, 0.0, 1.0);
    if (layer.alpha == 1)
        return;

    // As large as what the clip leaves of the device. The clip itself is applied when the layer is blended in.
    const QTransform toDevice = m_painter->deviceTransform();
    QRect area(0, 0, m_painter->device()->width(), m_painter->device()->height()); // an image's, in pixels
    if (m_painter->hasClipping())
        area &= toDevice.mapRect(m_painter->clipBoundingRect()).toAlignedRect();
    layer.origin = area.topLeft();
    layer.image = QImage(area.size().expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    layer.image.fill(Qt::transparent);
    layer.painter = std::make_unique<QPainter>(&layer.image);
    configure(*layer.painter);
    layer.painter->setWorldTransform(toDevice * QTransform::fromTranslate(-layer.origin.x(), -layer.origin.y()));
    m_painter = layer.painter.get();
}

void QtCanvas::endTransparencyLayer()
{
    if (m_scopes.empty() || !m_scopes.back())
        fatalError("Canvas.endTransparencyLayer: no layer to match");
    const std::unique_ptr<Layer> layer = std::move(m_scopes.back());
    m_scopes.pop_back();
    if (layer->painter) {
        layer->painter->end();
        m_painter = &innermostPainter();
        // Pixel onto pixel. Layers are pixels already, the outermost painter may have a scale of its own.
        m_painter->setWorldTransform(m_painter == m_outermost ? m_fromDevice : QTransform());
        m_painter->setOpacity(layer->alpha);
        m_painter->drawImage(layer->origin, layer->image);
    }
    m_painter->restore();
}

} // namespace RVCore
