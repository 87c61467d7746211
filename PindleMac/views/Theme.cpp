#include "PindleMac/views/Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace pindle::theme {

namespace {

constexpr double titlePixels = 22;
constexpr double windowTitlePixels = 24;
// The styles' sizes in relation to each other.
constexpr double headlineSize = 13;
constexpr double subheadlineSize = 11;
constexpr double captionSize = 10;
/// Below this the small styles are hard to read at 100 %.
constexpr double smallestCaptionPixels = 11;
/// Above this the form's rows no longer fit the panel's width.
constexpr double largestCaptionPixels = 17;

constexpr double symbolContrast = 3.0;
constexpr double textContrast = 4.5;

double captionPixels() {
    const double body = QFontInfo(QApplication::font()).pixelSize();
    return std::clamp(body * captionSize / headlineSize, smallestCaptionPixels,
                      largestCaptionPixels);
}

double pixels(TextStyle style) {
    switch (style) {
    case TextStyle::title:
        return titlePixels;
    case TextStyle::windowTitle:
        return windowTitlePixels;
    case TextStyle::headline:
    case TextStyle::body:
        return captionPixels() * headlineSize / captionSize;
    case TextStyle::subheadline:
    case TextStyle::subheadlineSemibold:
        return captionPixels() * subheadlineSize / captionSize;
    case TextStyle::caption:
    case TextStyle::captionSemibold:
    case TextStyle::captionBold:
    case TextStyle::captionMonospaced:
        break;
    }
    return captionPixels();
}

QFont::Weight weight(TextStyle style) {
    switch (style) {
    case TextStyle::title:
    case TextStyle::headline:
    case TextStyle::windowTitle:
    case TextStyle::captionBold:
        return QFont::Bold;
    case TextStyle::captionSemibold:
    case TextStyle::subheadlineSemibold:
        return QFont::DemiBold;
    case TextStyle::subheadline:
    case TextStyle::caption:
    case TextStyle::body:
    case TextStyle::captionMonospaced:
        break;
    }
    return QFont::Normal;
}

QColor withOpacity(QColor colour, double opacity) {
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour) {
    const double red = linear(static_cast<double>(colour.redF()));
    const double green = linear(static_cast<double>(colour.greenF()));
    const double blue = linear(static_cast<double>(colour.blueF()));
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

QColor darkenedTo(double contrast, QColor colour) {
    constexpr int stepPercent = 110;
    constexpr int mostSteps = 30;
    for (int step = 0; step < mostSteps && contrastRatio(colour, Qt::white) < contrast; ++step)
        colour = colour.darker(stepPercent);
    return colour;
}

} // namespace

QFont font(TextStyle style) {
    QFont result = style == TextStyle::captionMonospaced
                       ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                       : QApplication::font();
    result.setPixelSize(static_cast<int>(std::lround(pixels(style))));
    result.setWeight(weight(style));
    return result;
}

QColor primaryText() {
    return {0x1e, 0x22, 0x20};
}

QColor secondaryText() {
    return {0x5a, 0x61, 0x5d};
}

QColor white(double opacity) {
    return withOpacity(Qt::white, opacity);
}

QColor black(double opacity) {
    return withOpacity(Qt::black, opacity);
}

QColor red() {
    return {0xb4, 0x1c, 0x1c};
}

QColor green() {
    return {0x1a, 0x6b, 0x30};
}

QColor orange() {
    return {0xa6, 0x4d, 0x00};
}

QColor redTint() {
    return withOpacity({0xff, 0x3b, 0x30}, 0.14);
}

QColor greenTint() {
    return withOpacity({0x34, 0xc7, 0x59}, 0.14);
}

QColor yellowTint() {
    return withOpacity({0xff, 0xcc, 0x00}, 0.18);
}

QColor symbolGreen() {
    return {0x24, 0x8a, 0x3d};
}

QColor symbolBlue() {
    return {0x0a, 0x6a, 0xe0};
}

QColor symbolIndigo() {
    return {0x4f, 0x4d, 0xcf};
}

QColor symbolOrange() {
    return {0xd0, 0x62, 0x00};
}

QColor accent() {
    return darkenedTo(symbolContrast, QApplication::palette().color(QPalette::Highlight));
}

QColor backgroundStart() {
    return QColor::fromRgbF(0.985F, 0.962F, 0.925F);
}

QColor backgroundEnd() {
    return QColor::fromRgbF(0.918F, 0.958F, 0.936F);
}

QPalette palette() {
    // Derived from light colours only: the desktop's palette may be light on dark.
    QPalette result(QColor(0xef, 0xf1, 0xef), backgroundStart());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        result.setColor(role, primaryText());
    result.setColor(QPalette::Base, Qt::white);
    result.setColor(QPalette::PlaceholderText, secondaryText());
    result.setColor(QPalette::Highlight, darkenedTo(textContrast, accent()));
    result.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        result.setColor(QPalette::Disabled, role, black(0.4));
    return result;
}

double contrastRatio(const QColor &first, const QColor &second) {
    const double one = luminance(first) + 0.05;
    const double other = luminance(second) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QColor blended(const QColor &over, const QColor &below) {
    const float share = over.alphaF();
    const auto mix = [share](float top, float bottom) {
        return top * share + bottom * (1.0F - share);
    };
    return QColor::fromRgbF(mix(over.redF(), below.redF()), mix(over.greenF(), below.greenF()),
                            mix(over.blueF(), below.blueF()));
}

} // namespace pindle::theme
