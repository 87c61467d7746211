#include "PindleMac/views/HelpStep.h"

#include "PindleMac/views/WindowLabel.h"

#include <QHBoxLayout>
#include <QPainter>

namespace pindle {

namespace {

constexpr int spacing = 12;
constexpr int diameter = 24;

class NumberBadge : public QLabel {
public:
    explicit NumberBadge(const QString &number)
        : QLabel(number) {
        setTextFormat(Qt::PlainText);
        setFixedSize(diameter, diameter);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(windowtheme::accent(palette()));
        painter.drawEllipse(rect());
        painter.setFont(theme::font(theme::TextStyle::captionBold));
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }
};

} // namespace

HelpStep::HelpStep(const QString &number, const QString &text) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(spacing);
    row->addWidget(new NumberBadge(number), 0, Qt::AlignVCenter);
    row->addWidget(new WindowLabel(text, theme::TextStyle::body), 1);
}

} // namespace pindle
