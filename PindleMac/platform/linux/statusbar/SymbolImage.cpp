#include "PindleMac/platform/linux/statusbar/SymbolImage.h"

#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>

namespace pindle {

namespace {

const QColor dark(0x20, 0x20, 0x20);
const QColor light(0xf2, 0xf2, 0xf2);
constexpr qreal edgeOpacity = 0.7;
constexpr qreal edgeWidth = 1.0 / 22; ///< of the size

/// Relative luminance (WCAG 2), from 0 to 1.
double luminance(QRgb colour) {
    const auto linear = [](int channel) {
        const double c = channel / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

/// Luminance at which dark and light stand out equally.
constexpr double middleLuminance = 0.18;

} // namespace

QImage symbolImage(const QByteArray &svg, int size, const QColor &colour) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(svg).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

QImage symbolImageForAnyGround(const QByteArray &svg, int size) {
    const QImage edge = symbolImage(svg, size, dark);
    const qreal width = std::max<qreal>(1, size * edgeWidth);
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(edgeOpacity);
    for (const qreal x : {-width, 0.0, width}) {
        for (const qreal y : {-width, 0.0, width})
            painter.drawImage(QPointF(x, y), edge);
    }
    painter.setOpacity(1);
    painter.drawImage(0, 0, symbolImage(svg, size, light));
    return image;
}

QColor symbolColour(const QImage &ground) {
    double sum = 0;
    int count = 0;
    for (int y = 0; y < ground.height(); ++y) {
        for (int x = 0; x < ground.width(); ++x) {
            const QRgb pixel = ground.pixel(x, y);
            if (qAlpha(pixel) == 255) {
                sum += luminance(pixel);
                ++count;
            }
        }
    }
    return count > 0 && sum / count > middleLuminance ? dark : light;
}

} // namespace pindle
