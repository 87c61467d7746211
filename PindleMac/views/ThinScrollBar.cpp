#include "PindleMac/views/ThinScrollBar.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace pindle {

namespace {
constexpr double thickness = 5;
constexpr double smallestLength = 28;
constexpr double inset = 2;
constexpr double restingOpacity = 0.2;
constexpr double activeOpacity = 0.42;
} // namespace

ThinScrollBar::ThinScrollBar(QWidget *parent)
    : QScrollBar(Qt::Vertical, parent) {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setContextMenuPolicy(Qt::NoContextMenu);
}

void ThinScrollBar::standInFor(QScrollBar &other) {
    source_ = &other;
    const auto adopt = [this, &other] {
        setRange(other.minimum(), other.maximum());
        setSingleStep(other.singleStep());
        setValue(other.value());
        setVisible(other.maximum() > other.minimum());
    };
    connect(&other, &QScrollBar::rangeChanged, this, adopt);
    connect(&other, &QScrollBar::valueChanged, this, &QScrollBar::setValue);
    connect(this, &QScrollBar::valueChanged, &other, &QScrollBar::setValue);
    adopt();
}

QSize ThinScrollBar::sizeHint() const {
    return {thicknessWithMargin, 0};
}

QRectF ThinScrollBar::thumb() const {
    const double track = height() - 2 * inset;
    const double range = maximum() - minimum();
    // The bar stood in for changes its page after its range, and tells nobody.
    const int page = source_ ? source_->pageStep() : pageStep();
    const double length =
        std::clamp(track * page / (range + page), std::min(smallestLength, track), track);
    const double progress = range > 0 ? (value() - minimum()) / range : 0;
    return {width() - thickness - inset, inset + (track - length) * progress, thickness, length};
}

void ThinScrollBar::paintEvent(QPaintEvent * /*event*/) {
    if (maximum() <= minimum())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool active = underMouse() || grip_ >= 0;
    QColor colour = palette().color(QPalette::WindowText);
    colour.setAlphaF(static_cast<float>(active ? activeOpacity : restingOpacity));
    painter.setBrush(colour);
    painter.drawRoundedRect(thumb(), thickness / 2, thickness / 2);
}

void ThinScrollBar::mousePressEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton)
        return;
    const double y = event->position().y();
    const QRectF held = thumb();
    if (y >= held.top() && y <= held.bottom())
        grip_ = y - held.top();
    else
        triggerAction(y < held.top() ? SliderPageStepSub : SliderPageStepAdd);
    update();
}

void ThinScrollBar::mouseMoveEvent(QMouseEvent *event) {
    const double slack = height() - 2 * inset - thumb().height();
    if (grip_ < 0 || slack <= 0)
        return;
    const double progress = (event->position().y() - grip_ - inset) / slack;
    setValue(minimum() + qRound(progress * (maximum() - minimum())));
}

void ThinScrollBar::mouseReleaseEvent(QMouseEvent * /*event*/) {
    grip_ = -1;
    update();
}

} // namespace pindle
