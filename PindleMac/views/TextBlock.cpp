#include "PindleMac/views/TextBlock.h"

#include <QCache>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <deque>
#include <memory>

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

constexpr qsizetype longText = 500;    ///< characters from which a layout is worth keeping
constexpr std::size_t keptLayouts = 6; ///< two widths each of the three messages there can be

struct KeptLayout {
    QString text;
    QFont font;
    double width;
    Qt::Alignment alignment;
    std::unique_ptr<Layout> layout;
};

/// The layout of a text, to be used at once. Laying out a long one takes many frames, and the same
/// one is measured and painted again and again. Main thread.
const Layout &layoutOf(const QString &text, const QFont &font, double width,
                       Qt::Alignment alignment = Qt::AlignLeft) {
    // Never destroyed: at the program's end its fonts would outlive the font system.
    static auto &kept = *new std::deque<KeptLayout>;
    const auto found = std::find_if(kept.begin(), kept.end(), [&](const KeptLayout &each) {
        return each.width == width && each.alignment == alignment && each.text == text &&
               each.font == font;
    });
    if (found != kept.end())
        return *found->layout;
    // A short text takes the place of the last short one.
    if (!kept.empty() && kept.back().text.size() < longText)
        kept.pop_back();
    if (kept.size() >= keptLayouts)
        kept.pop_front();
    kept.push_back(
        {text, font, width, alignment, std::make_unique<Layout>(text, font, width, alignment)});
    return *kept.back().layout;
}

struct Measure {
    double height = 0;
    double naturalWidth = 0;
};

struct Question {
    QString text;
    QFont font;
    double width = 0;
    bool operator==(const Question &) const = default;
};

size_t qHash(const Question &question, size_t seed) {
    return qHashMulti(seed, question.text, question.font, question.width);
}

/// Layouts ask for the same few measures dozens of times a frame, and shaping the text for each
/// would take longer than all the rest of it.
Measure measured(const QString &text, const QFont &font, double width) {
    constexpr int charactersKept = 20000;
    // Never destroyed either.
    static auto &known = *new QCache<Question, Measure>(charactersKept);
    const Question question{text, font, width};
    if (const Measure *found = known.object(question))
        return *found;
    const Layout &layout = layoutOf(text, font, width);
    const Measure measure{layout.height(), layout.naturalWidth()};
    known.insert(question, new Measure(measure), std::max<qsizetype>(text.size(), 1));
    return measure;
}

} // namespace

double naturalWidth(const QString &text, const QFont &font) {
    return std::ceil(measured(text, font, unlimitedWidth).naturalWidth);
}

double longestWordWidth(const QString &text, const QFont &font) {
    double longest = 0;
    for (const QString &word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        longest = std::max(longest, naturalWidth(word, font));
    return longest;
}

double height(const QString &text, const QFont &font, double width) {
    return std::ceil(measured(text, font, width).height);
}

void draw(QPainter &painter, const QRectF &rect, const QString &text, const QFont &font,
          Qt::Alignment alignment) {
    const QRectF clip = painter.hasClipping() ? painter.clipBoundingRect() : rect;
    layoutOf(text, font, rect.width(), alignment).draw(&painter, rect.topLeft(), {}, clip);
}

} // namespace pindle::textblock
