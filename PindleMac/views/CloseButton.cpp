#include "PindleMac/views/CloseButton.h"

#include "PindleMac/views/Symbols.h"
#include "PindleMac/views/Theme.h"

namespace pindle {

namespace {
constexpr int diameter = 28;
constexpr double symbolSize = 11;
constexpr double fillOpacity = 0.72;
} // namespace

CloseButton::CloseButton() {
    setFixedSize(diameter, diameter);
    setNames(QStringLiteral("Close"), {});
}

QSize CloseButton::sizeHint() const {
    return {diameter, diameter};
}

double CloseButton::cornerRadius() const {
    return diameter / 2.0;
}

QColor CloseButton::fill() const {
    return theme::white(fillOpacity);
}

void CloseButton::paintContent(QPainter &painter) {
    constexpr double inset = (diameter - symbolSize) / 2;
    symbols::draw(painter, QStringLiteral("xmark"), {inset, inset, symbolSize, symbolSize},
                  theme::secondaryText());
}

} // namespace pindle
