#include "PindleMac/views/PanelOutline.h"

#include "PindleMac/views/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace pindle {

namespace {
constexpr double edgeOpacity = 0.1;
constexpr double edgeWidth = 1;
} // namespace

PanelOutline::PanelOutline(QWidget *parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PanelOutline::setClipping(bool clipping) {
    clipping_ = clipping;
    update();
}

void PanelOutline::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    const QRectF bounds = rect();
    edge_.draw(painter, size(), [&](QPainter &into) {
        constexpr double inset = edgeWidth / 2;
        into.setRenderHint(QPainter::Antialiasing);
        into.setPen(QPen(theme::black(edgeOpacity), edgeWidth));
        into.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), radius - inset,
                             radius - inset);
    });
    if (!clipping_)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outside;
    outside.addRect(bounds);
    outside.addRoundedRect(bounds, radius, radius);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside, Qt::black);
}

} // namespace pindle
