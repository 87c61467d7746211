#include "PindleMac/views/PlainButton.h"

#include "PindleMac/views/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace pindle {

namespace {

constexpr double disabledOpacity = 0.45;
constexpr double pressedOpacity = 0.6;
/// Share of the way to opaque that the fill goes while the pointer is over it.
constexpr float hoverLift = 0.7F;
constexpr double ringWidth = 2;

bool comesFromKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

} // namespace

PlainButton::PlainButton() {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void PlainButton::setNames(const QString &name, const QString &description) {
    setAccessibleName(name);
    setAccessibleDescription(description);
}

bool PlainButton::event(QEvent *event) {
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    return QAbstractButton::event(event);
}

double PlainButton::contentOpacity() const {
    if (!isEnabled())
        return disabledOpacity;
    return isDown() ? pressedOpacity : 1;
}

void PlainButton::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = cornerRadius();
    QColor shape = fill();
    if (isEnabled() && underMouse() && !isDown())
        shape.setAlphaF(shape.alphaF() + (1 - shape.alphaF()) * hoverLift);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shape);
    painter.drawRoundedRect(rect(), radius, radius);

    if (showsFocusRing()) {
        constexpr double inset = ringWidth / 2;
        painter.setPen(QPen(theme::accent(), ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                                radius - inset, radius - inset);
    }
    painter.setOpacity(contentOpacity());
    paintContent(painter);
}

void PlainButton::keyPressEvent(QKeyEvent *event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QAbstractButton::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        click();
}

void PlainButton::mouseDoubleClickEvent(QMouseEvent *event) {
    event->accept();
}

void PlainButton::focusInEvent(QFocusEvent *event) {
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        focusFromKeyboard_ = comesFromKeyboard(event->reason());
    QAbstractButton::focusInEvent(event);
}

} // namespace pindle
