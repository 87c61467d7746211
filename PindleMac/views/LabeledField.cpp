#include "PindleMac/views/LabeledField.h"

#include "PindleMac/views/FieldLabel.h"
#include "PindleMac/views/Theme.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <limits>

namespace pindle {

namespace {

constexpr int labelSpacing = 6;
constexpr double radius = 6;
constexpr int horizontalPadding = 6;
constexpr int verticalPadding = 2;
constexpr double borderOpacity = 0.14;
constexpr double ringWidth = 2;

} // namespace

RoundedTextField::RoundedTextField() {
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max());
    setTextMargins(horizontalPadding, verticalPadding, horizontalPadding, verticalPadding);
    setFont(theme::font(theme::TextStyle::subheadline));
    QPalette clear = theme::palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
}

void RoundedTextField::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    if (hasFocus())
        paintBorder(painter);
    else
        unfocused_.draw(painter, size(), [this](QPainter &into) { paintBorder(into); });
    painter.end();
    QLineEdit::paintEvent(event);
}

void RoundedTextField::paintBorder(QPainter &painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hasFocus() ? ringWidth : 1;
    painter.setPen(QPen(hasFocus() ? theme::accent() : theme::black(borderOpacity), line));
    painter.setBrush(Qt::white);
    const QRectF border = QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2);
    painter.drawRoundedRect(border, radius - line / 2, radius - line / 2);
}

LabeledField::LabeledField(const QString &title)
    : field_(new RoundedTextField) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(labelSpacing);
    layout->addWidget(fieldLabel(title, *field_));
    layout->addWidget(field_);
    connect(field_, &QLineEdit::textEdited, this, &LabeledField::textEdited);
}

void LabeledField::changeEvent(QEvent *event) {
    // The label takes up a new application font by itself; a field with a font of its own does not.
    if (event->type() == QEvent::FontChange)
        field_->setFont(theme::font(theme::TextStyle::subheadline));
    QWidget::changeEvent(event);
}

void LabeledField::setText(const QString &text) {
    if (text == field_->text())
        return;
    const int cursor = field_->cursorPosition();
    const bool beingEdited = field_->hasFocus();
    field_->setText(text);
    field_->setCursorPosition(beingEdited ? cursor : 0);
}

} // namespace pindle
