#include "PindleMac/views/TextBlock.h"

#include <QPainter>
#include <QTextLayout>
#include <cmath>

namespace pindle::textblock {

namespace {

constexpr double unlimitedWidth = 1e6;

class Layout : public QTextLayout {
public:
    Layout(QString text, const QFont &font, double width, Qt::Alignment alignment = Qt::AlignLeft)
        : QTextLayout(withLineSeparators(std::move(text)), font) {
        QTextOption option(alignment);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        setTextOption(option);
        setCacheEnabled(true);
        beginLayout();
        for (QTextLine line = createLine(); line.isValid(); line = createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, height_});
            height_ += line.height();
            naturalWidth_ = std::max(naturalWidth_, line.naturalTextWidth());
        }
        endLayout();
    }

    double height() const { return height_; }
    double naturalWidth() const { return naturalWidth_; }

private:
    static QString withLineSeparators(QString text) {
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        for (const char16_t lineBreak : {u'\n', u'\r', u'\u2029'})
            text.replace(QChar(lineBreak), QChar(QChar::LineSeparator));
        return text;
    }

    double height_ = 0;
    double naturalWidth_ = 0;
};

} // namespace

double naturalWidth(const QString &text, const QFont &font) {
    return std::ceil(Layout(text, font, unlimitedWidth).naturalWidth());
}

double longestWordWidth(const QString &text, const QFont &font) {
    double longest = 0;
    for (const QString &word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        longest = std::max(longest, naturalWidth(word, font));
    return longest;
}

double height(const QString &text, const QFont &font, double width) {
    return std::ceil(Layout(text, font, width).height());
}

void draw(QPainter &painter, const QRectF &rect, const QString &text, const QFont &font,
          Qt::Alignment alignment) {
    Layout(text, font, rect.width(), alignment).draw(&painter, rect.topLeft());
}

} // namespace pindle::textblock
