#include "BlurPeers.h"

#include <Foundation/Stop.h>

#include <QGraphicsBlurEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <opencv2/imgproc.hpp>

namespace RVCore {

namespace {

void copyRow(void* to, const Bitmap& from, int y)
{
    std::memcpy(to, from.row(y).data(), from.row(y).size_bytes());
}

QImage imageOf(const Bitmap& picture)
{
    QImage image(picture.width(), picture.height(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < picture.height(); y++)
        copyRow(image.scanLine(y), picture, y);
    return image;
}

// Renders a picture with and without the effect: the difference is the effect's time, without what a scene costs.
class QGraphicsBlurPeer : public BlurPeer {
public:
    QGraphicsBlurPeer(const Bitmap& picture, double radius)
        : m_target(imageOf(picture)), m_item(m_scene.addPixmap(QPixmap::fromImage(m_target))),
          m_effect(new QGraphicsBlurEffect)
    {
        m_effect->setBlurRadius(radius);
        m_item->setGraphicsEffect(m_effect);
    }

    std::string name() const override { return "qgraphicsblur"; }

    void setSigma(double sigma) override
    {
        static const double radiusPerSigma = qGraphicsBlurRadius(8) / 8;
        m_effect->setBlurRadius(radiusPerSigma * sigma);
    }
    void blur() override { render(); }
    void doWithoutBlur() override
    {
        m_effect->setEnabled(false);
        render();
        m_effect->setEnabled(true);
    }

    Bitmap blurred() override
    {
        render();
        Bitmap result(m_target.width(), m_target.height());
        for (int y = 0; y < result.height(); y++)
            std::memcpy(result.row(y).data(), m_target.constScanLine(y), result.row(y).size_bytes());
        return result;
    }

private:
    void render()
    {
        QPainter painter(&m_target);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        m_scene.render(&painter, m_target.rect(), m_target.rect());
    }

    QImage m_target;
    QGraphicsScene m_scene;
    QGraphicsPixmapItem* m_item;
    QGraphicsBlurEffect* m_effect; // the item's
};

class OpenCVPeer : public BlurPeer {
public:
    OpenCVPeer(const Bitmap& picture, double sigma)
        : m_picture(picture.height(), picture.width(), CV_8UC4), m_sigma(sigma)
    {
        for (int y = 0; y < picture.height(); y++)
            copyRow(m_picture.ptr(y), picture, y);
        cv::setNumThreads(1);
        blur();
    }

    std::string name() const override { return "opencv"; }
    void setSigma(double sigma) override { m_sigma = sigma; }
    void blur() override { cv::GaussianBlur(m_picture, m_blurred, {}, m_sigma, m_sigma, cv::BORDER_REPLICATE); }

    Bitmap blurred() override
    {
        Bitmap result(m_picture.cols, m_picture.rows);
        for (int y = 0; y < result.height(); y++)
            std::memcpy(result.row(y).data(), m_blurred.ptr(y), result.row(y).size_bytes());
        return result;
    }

private:
    cv::Mat m_picture;
    cv::Mat m_blurred;
    double m_sigma;
};

// The standard deviation of what spreads a black and white edge: twice the sum of the distances from it, weighed by
// how far the picture is from black or white there.
double spreadOfEdge(double radius)
{
    constexpr int size = 800;
    constexpr int edge = size / 2;
    Bitmap picture(size, size);
    for (int y = 0; y < size; y++)
        for (int x = 0; x < size; x++)
            picture.row(y)[static_cast<std::size_t>(x)] = x < edge ? 0xff000000 : 0xffffffff;
    const Bitmap blurred = QGraphicsBlurPeer(picture, radius).blurred();
    double variance = 0;
    for (int x = 200; x < size - 200; x++) {
        const double value = (blurred.row(edge)[static_cast<std::size_t>(x)] & 255) / 255.0;
        variance += 2 * std::abs(x + 0.5 - edge) * (x < edge ? value : 1 - value);
    }
    return std::sqrt(variance);
}

} // namespace

double qGraphicsBlurRadius(double sigma)
{
    double narrow = 0;
    double wide = 8 * sigma;
    if (spreadOfEdge(wide) < sigma)
        fatalError("QGraphicsBlurEffect does not blur as much as that");
    for (int step = 0; step < 12; step++) {
        const double middle = (narrow + wide) / 2;
        (spreadOfEdge(middle) < sigma ? narrow : wide) = middle;
    }
    return wide;
}

std::unique_ptr<BlurPeer> makeQGraphicsBlurPeer(const Bitmap& picture, double sigma)
{
    return std::make_unique<QGraphicsBlurPeer>(picture, qGraphicsBlurRadius(sigma));
}

std::unique_ptr<BlurPeer> makeOpenCVPeer(const Bitmap& picture, double sigma)
{
    return std::make_unique<OpenCVPeer>(picture, sigma);
}

} // namespace RVCore
