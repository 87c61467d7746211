#include "PindleMac/views/Backdrop.h"

#include <QPainter>
#include <cmath>

namespace pindle {

void Backdrop::draw(QPainter &painter, QSize size, const Paint &paint) {
    const double scale = painter.device()->devicePixelRatioF();
    const QTransform &onDevice = painter.deviceTransform();
    const bool asOnScreen = onDevice.type() <= QTransform::TxScale && onDevice.m11() == scale &&
                            onDevice.m22() == scale;
    // At a fractional scale the picture's pixels need not fall on those of the screen; and who
    // draws a view enlarged wants more than its pixels enlarged.
    if (!asOnScreen || scale != std::floor(scale)) {
        paint(painter);
        return;
    }
    const QSize pixels = size * scale;
    const auto fits = [&](const QPixmap &picture) {
        return picture.size() == pixels && picture.devicePixelRatio() == scale;
    };
    if (!fits(pictures_[0]))
        pictures_[0].swap(pictures_[1]);
    if (!fits(pictures_[0])) {
        QPixmap picture(pixels);
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::transparent);
        QPainter own(&picture);
        paint(own);
        own.end();
        pictures_[0] = picture;
    }
    painter.drawPixmap(QPoint(), pictures_[0]);
}

} // namespace pindle
