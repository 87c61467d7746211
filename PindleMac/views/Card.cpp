#include "PindleMac/views/Card.h"

#include "PindleMac/views/Theme.h"

#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

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
    backdrop_.forget();
    update();
}

void Card::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    backdrop_.draw(painter, size(), [this](QPainter &into) {
        into.setRenderHint(QPainter::Antialiasing);
        into.setPen(Qt::NoPen);
        into.setBrush(fill_);
        // A radius larger than there is room for would make the corners elliptic.
        const double radius = std::min(radius_, std::min(width(), height()) / 2.0);
        into.drawRoundedRect(rect(), radius, radius);
    });
}

SectionCard::SectionCard(int spacing)
    : Card(theme::white(sectionOpacity), sectionRadius)
    , column_(new QVBoxLayout(this)) {
    column_->setContentsMargins(sectionPadding, sectionPadding, sectionPadding, sectionPadding);
    column_->setSpacing(spacing);
}

} // namespace pindle
