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
/// Room around the track for the ring.
constexpr int margin = 4;
constexpr double outlineContrastOpacity = 0.55;

} // namespace

SwitchControl::SwitchControl(const QString &label)
    : QCheckBox(label) {
    setAccessibleName(label);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QFont SwitchControl::labelFont() const {
    return theme::font(theme::TextStyle::body);
}

QSize SwitchControl::sizeHint() const {
    const QFontMetricsF metrics(labelFont());
    const double width = metrics.horizontalAdvance(text()) + gap + trackWidth + margin;
    return {static_cast<int>(std::ceil(width)),
            std::max(trackHeight + 2 * margin, static_cast<int>(std::ceil(metrics.height())))};
}

QRectF SwitchControl::track() const {
    return {static_cast<double>(width() - trackWidth - margin), (height() - trackHeight) / 2.0,
            trackWidth, trackHeight};
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
    edge.setAlphaF(static_cast<float>(outlineContrastOpacity));
    painter.setPen(isChecked() ? QPen(Qt::NoPen) : QPen(edge, 1));
    painter.setBrush(isChecked() ? accent(palette()) : controlFill(palette()));
    const QRectF line = isChecked() ? shape : shape.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(line, line.height() / 2, line.height() / 2);

    const double knob = trackHeight - 2 * knobInset - 2;
    const double y = shape.center().y() - knob / 2;
    const double inset = knobInset + 1;
    const double x = isChecked() ? shape.right() - inset - knob : shape.left() + inset;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? QColor(Qt::white) : edge);
    painter.drawEllipse(QRectF(x, y, knob, knob));

    if (hasFocus()) {
        constexpr double outside = margin - ringWidth / 2;
        const QRectF around = shape.adjusted(-outside, -outside, outside, outside);
        painter.setPen(QPen(ring(palette()), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(around, around.height() / 2, around.height() / 2);
    }
}

} // namespace pindle
