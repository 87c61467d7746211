#include "PindleMac/views/Spinner.h"

#include "PindleMac/views/Theme.h"

#include <QPainter>
#include <QTimerEvent>

namespace pindle {

namespace {

constexpr int diameter = 32;
constexpr int spokes = 12;
/// One turn a second.
constexpr int stepMilliseconds = 1000 / spokes;
constexpr double innerRadius = 8;
constexpr double outerRadius = 14.5;
constexpr double spokeWidth = 2.8;
constexpr double faintest = 0.1;
constexpr double strongest = 0.62;

} // namespace

Spinner::Spinner() {
    setFixedSize(diameter, diameter);
}

void Spinner::showEvent(QShowEvent *event) {
    timer_.start(stepMilliseconds, Qt::CoarseTimer, this);
    QWidget::showEvent(event);
}

void Spinner::hideEvent(QHideEvent *event) {
    timer_.stop();
    QWidget::hideEvent(event);
}

void Spinner::timerEvent(QTimerEvent *event) {
    if (event->timerId() != timer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    step_ = (step_ + 1) % spokes;
    update();
}

void Spinner::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(diameter / 2.0, diameter / 2.0);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (step_ - spoke + spokes) % spokes;
        const double fade = 1.0 - static_cast<double>(age) / (spokes - 1);
        const QColor colour = theme::black(faintest + (strongest - faintest) * fade * fade);
        painter.save();
        painter.rotate(360.0 * spoke / spokes);
        painter.setPen(QPen(colour, spokeWidth, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -innerRadius), QPointF(0, -outerRadius));
        painter.restore();
    }
}

} // namespace pindle
