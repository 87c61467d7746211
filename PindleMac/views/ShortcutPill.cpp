#include "PindleMac/views/ShortcutPill.h"

#include "PindleMac/views/TextBlock.h"

#include <QPainter>

namespace pindle {

namespace {

constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 8;
constexpr double fillOpacity = 0.08;
constexpr auto pillStyle = theme::TextStyle::captionSemibold;

} // namespace

ShortcutPill::ShortcutPill(const QString &text)
    : TextLabel(text, pillStyle, theme::primaryText()) {}

QSize ShortcutPill::sizeHint() const {
    return TextLabel::sizeHint() + QSize(2 * horizontalPadding, 2 * verticalPadding);
}

int ShortcutPill::heightForWidth(int width) const {
    return TextLabel::heightForWidth(width - 2 * horizontalPadding) + 2 * verticalPadding;
}

void ShortcutPill::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::black(fillOpacity));
    const double radius = height() / 2.0;
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setPen(theme::primaryText());
    textblock::draw(painter,
                    QRectF(rect()).adjusted(horizontalPadding, verticalPadding, -horizontalPadding,
                                            -verticalPadding),
                    text(), theme::font(pillStyle), Qt::AlignLeft);
}

} // namespace pindle
