#include "PindleMac/views/ActionButton.h"

#include "PindleMac/views/Symbols.h"
#include "PindleMac/views/TextBlock.h"
#include "PindleMac/views/Theme.h"

#include <QPainter>

namespace pindle {

namespace {

constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 9;
constexpr int symbolSize = 14;
constexpr int symbolGap = 5;
constexpr int widthBesideText = 2 * horizontalPadding + symbolSize + symbolGap;
constexpr double fillOpacity = 0.75;
/// A third of the panel's row: three of them never ask for more than there is.
constexpr int largestMinimumWidth = 121;

QFont labelFont() {
    return theme::font(theme::TextStyle::captionSemibold);
}

} // namespace

ActionButton::ActionButton(const QString &text, const QString &symbol)
    : text_(text)
    , symbol_(symbol) {
    setNames(text, {});
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize ActionButton::sizeHint() const {
    const int width =
        static_cast<int>(textblock::naturalWidth(text_, labelFont())) + widthBesideText;
    return {width, heightForWidth(width)};
}

QSize ActionButton::minimumSizeHint() const {
    const int width =
        static_cast<int>(textblock::longestWordWidth(text_, labelFont())) + widthBesideText;
    return {std::min(width, largestMinimumWidth), sizeHint().height()};
}

int ActionButton::heightForWidth(int width) const {
    const double text = textblock::height(text_, labelFont(), width - widthBesideText);
    return std::max(static_cast<int>(text), symbolSize) + 2 * verticalPadding;
}

double ActionButton::cornerRadius() const {
    return height() / 2.0;
}

QColor ActionButton::fill() const {
    return theme::white(fillOpacity);
}

void ActionButton::paintContent(QPainter &painter) {
    const double textWidth = width() - widthBesideText;
    const double textHeight = textblock::height(text_, labelFont(), textWidth);
    symbols::draw(painter, symbol_,
                  {horizontalPadding, (height() - symbolSize) / 2.0, symbolSize, symbolSize},
                  theme::primaryText());
    painter.setPen(theme::primaryText());
    textblock::draw(painter,
                    {horizontalPadding + symbolSize + symbolGap, (height() - textHeight) / 2,
                     textWidth, textHeight},
                    text_, labelFont(), Qt::AlignLeft);
}

} // namespace pindle
