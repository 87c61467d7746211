#include "PindleMac/views/Card.h"

#include "PindleMac/views/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr double sectionRadius = 18;
constexpr double sectionOpacity = 0.62;
constexpr int sectionPadding = 16;
} // namespace

Card::Card(const QColor &fill, double radius)
    : fill_(fill)
    , radius_(radius) {}

void Card::setFill(const QColor &fill) {
    fill_ = fill;
    update();
}

void Card::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill_);
    painter.drawRoundedRect(rect(), radius_, radius_);
}

SectionCard::SectionCard(int spacing)
    : Card(theme::white(sectionOpacity), sectionRadius)
    , column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(sectionPadding, sectionPadding, sectionPadding, sectionPadding);
    column_->setSpacing(spacing);
}

} // namespace pindle
