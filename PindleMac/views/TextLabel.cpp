#include "PindleMac/views/TextLabel.h"

#include "PindleMac/views/TextBlock.h"

#include <QPaintEvent>
#include <QPainter>

namespace pindle {

TextLabel::TextLabel(const QString &text, theme::TextStyle style, const QColor &colour)
    : style_(style)
    , colour_(colour) {
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::NoTextInteraction);
    setWordWrap(true);
    setText(text);
}

void TextLabel::setColour(const QColor &colour) {
    colour_ = colour;
    update();
}

QSize TextLabel::sizeHint() const {
    const QFont font = theme::font(style_);
    const double width = textblock::naturalWidth(text(), font);
    return QSizeF(width, textblock::height(text(), font, width)).toSize();
}

QSize TextLabel::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

int TextLabel::heightForWidth(int width) const {
    return static_cast<int>(textblock::height(text(), theme::font(style_), width));
}

void TextLabel::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.setPen(colour_);
    textblock::draw(painter, rect(), text(), theme::font(style_), Qt::AlignLeft);
}

} // namespace pindle
