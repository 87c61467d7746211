#include "PindleMac/views/WindowButton.h"

#include "PindleMac/views/Theme.h"
#include "PindleMac/views/WindowTheme.h"

#include <QPainter>
#include <cmath>

namespace pindle {

namespace {

constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 5;
constexpr double radius = 6;
constexpr double ringWidth = 2;
/// Of the ring from the edge of a filled button, on which the ring's own colour would be lost.
constexpr double ringInset = 2;
constexpr double pressedVeil = 0.18;
constexpr double hoverVeil = 0.08;

QFont labelFont() {
    return theme::font(theme::TextStyle::body);
}

} // namespace

WindowButton::WindowButton(const QString &label, Kind kind, const QString &subject)
    : label_(label)
    , kind_(kind) {
    setNames(label, subject);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize WindowButton::sizeHint() const {
    const QFontMetricsF metrics(labelFont());
    return {static_cast<int>(std::ceil(metrics.horizontalAdvance(label_) + 2 * horizontalPadding)),
            static_cast<int>(std::ceil(metrics.height() + 2 * verticalPadding))};
}

double WindowButton::cornerRadius() const {
    return radius;
}

QColor WindowButton::fill() const {
    const QColor resting = kind_ == Kind::prominent ? windowtheme::accent(palette())
                                                    : windowtheme::controlFill(palette());
    if (isDown())
        return theme::blended(theme::black(pressedVeil), resting);
    return underMouse() ? theme::blended(theme::black(hoverVeil), resting) : resting;
}

void WindowButton::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF shape(rect());
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill());
    painter.drawRoundedRect(shape, radius, radius);
    if (kind_ == Kind::bordered) {
        painter.setPen(QPen(windowtheme::controlOutline(palette()), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(shape.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    }
    if (showsFocusRing()) {
        const bool prominent = kind_ == Kind::prominent;
        const double inset = ringWidth / 2 + (prominent ? ringInset : 0);
        painter.setPen(
            QPen(prominent ? QColor(Qt::white) : windowtheme::ring(palette()), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(shape.adjusted(inset, inset, -inset, -inset), radius - inset,
                                radius - inset);
    }
    paintContent(painter);
}

void WindowButton::paintContent(QPainter &painter) {
    painter.setFont(labelFont());
    painter.setPen(kind_ == Kind::prominent
                       ? QColor(Qt::white)
                       : windowtheme::ink(windowtheme::Ink::primary, palette()));
    painter.drawText(rect(), Qt::AlignCenter, label_);
}

} // namespace pindle
