#include "PindleMac/views/SwitchControl.h"

#include "PindleMac/views/Theme.h"
#include "PindleMac/views/WindowTheme.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace pindle {

namespace {

constexpr int trackWidth = 38;
constexpr int trackHeight = 22;
constexpr int gap = 10;
constexpr double knobInset = 2;
constexpr double ringWidth = 2;
constexpr double outlineOpacity = 0.55;

} // namespace

SwitchControl::SwitchControl(const QString &label)
    : QCheckBox(label) {
    setAccessibleName(label);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont SwitchControl::labelFont() const {
    return theme::font(theme::TextStyle::body);
}

QSize SwitchControl::sizeHint() const {
    const QFontMetricsF metrics(labelFont());
    const double width = metrics.horizontalAdvance(text()) + gap + trackWidth;
    return {static_cast<int>(std::ceil(width)),
            std::max(trackHeight, static_cast<int>(std::ceil(metrics.height())))};
}

QRectF SwitchControl::track() const {
    return {static_cast<double>(width() - trackWidth), (height() - trackHeight) / 2.0, trackWidth,
            trackHeight};
}

void SwitchControl::keyPressEvent(QKeyEvent *event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QCheckBox::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        click();
}

void SwitchControl::paintEvent(QPaintEvent * /*event*/) {
    using namespace windowtheme;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont());
    painter.setPen(ink(Ink::primary, palette()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text());

    const QRectF shape = track();
    QColor edge = ink(Ink::primary, palette());
    edge.setAlphaF(static_cast<float>(outlineOpacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? accent(palette()) : controlFill(palette()));
    painter.drawRoundedRect(shape, trackHeight / 2.0, trackHeight / 2.0);
    paintOutline(painter, edge);

    const double knob = trackHeight - 2 * knobInset - 2;
    const double y = shape.center().y() - knob / 2;
    const double inset = knobInset + 1;
    const double x = isChecked() ? shape.right() - inset - knob : shape.left() + inset;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? QColor(Qt::white) : edge);
    painter.drawEllipse(QRectF(x, y, knob, knob));
}

/// A thin edge around the switch that is off, and a thick one around the one with the keyboard: the
/// ring's colour, or, on the accent colour, that of the text.
void SwitchControl::paintOutline(QPainter &painter, const QColor &edge) {
    using namespace windowtheme;
    if (isChecked() && !hasFocus())
        return;
    const double width = hasFocus() ? ringWidth : 1;
    QColor colour = edge;
    if (hasFocus())
        colour = isChecked() ? ink(Ink::primary, palette()) : ring(palette());
    const QRectF line = track().adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter.setPen(QPen(colour, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(line, line.height() / 2, line.height() / 2);
}

} // namespace pindle
