#include "PindleMac/views/WindowTheme.h"

#include "PindleMac/views/Theme.h"

#include <algorithm>
#include <array>

namespace pindle::windowtheme {

namespace {

constexpr double textContrast = 4.5;
constexpr double shapeContrast = 3.0;
constexpr double secondaryOpacity = 0.62;
constexpr double controlOpacity = 0.07;
constexpr double controlOpacityStep = 0.01;
constexpr double outlineOpacity = 0.28;
/// The darkest veil of black there is on a window: a badge on a card.
constexpr double deepestVeil = 0.1;
constexpr int mixingSteps = 20;

QColor mixed(const QColor &colour, const QColor &other, double share) {
    QColor veil = other;
    veil.setAlphaF(static_cast<float>(share));
    return theme::blended(veil, colour);
}

double leastContrast(const QColor &colour, const std::array<QColor, 2> &grounds) {
    return std::min(theme::contrastRatio(colour, grounds[0]),
                    theme::contrastRatio(colour, grounds[1]));
}

/// The colour, moved as little as necessary towards black or white to stand out from both grounds.
QColor standingOut(const QColor &colour, const std::array<QColor, 2> &grounds, double contrast) {
    const bool toWhite = leastContrast(Qt::white, grounds) > leastContrast(Qt::black, grounds);
    const QColor target = toWhite ? Qt::white : Qt::black;
    for (int step = 0; step < mixingSteps; ++step) {
        const QColor moved = mixed(colour, target, static_cast<double>(step) / mixingSteps);
        if (leastContrast(moved, grounds) >= contrast)
            return moved;
    }
    return target;
}

std::array<QColor, 2> grounds(const QPalette &palette) {
    const QColor window = background(palette);
    return {window, theme::blended(theme::black(deepestVeil), window)};
}

bool isDark(const QPalette &palette) {
    const QColor window = background(palette);
    return theme::contrastRatio(window, Qt::white) > theme::contrastRatio(window, Qt::black);
}

} // namespace

QColor background(const QPalette &palette) {
    QColor window = palette.color(QPalette::Active, QPalette::Window);
    window.setAlpha(255);
    return window;
}

QColor ink(Ink ink, const QPalette &palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    QColor wanted = text;
    if (ink == Ink::secondary)
        wanted = mixed(background(palette), text, secondaryOpacity);
    else if (ink == Ink::error)
        wanted = isDark(palette) ? QColor(0xff, 0x6b, 0x61) : QColor(0xc8, 0x1e, 0x1e);
    return standingOut(wanted, grounds(palette), textContrast);
}

QColor accent(const QPalette &palette) {
    const QColor white = Qt::white;
    return standingOut(palette.color(QPalette::Active, QPalette::Highlight), {white, white},
                       textContrast);
}

QColor ring(const QPalette &palette) {
    return standingOut(palette.color(QPalette::Active, QPalette::Highlight), grounds(palette),
                       shapeContrast);
}

QColor controlFill(const QPalette &palette) {
    const QColor text = ink(Ink::primary, palette);
    // Fainter where the label would be hard to read on it.
    double opacity = controlOpacity;
    while (opacity > 0 &&
           theme::contrastRatio(text, mixed(background(palette), text, opacity)) < textContrast)
        opacity -= controlOpacityStep;
    return mixed(background(palette), text, std::max(opacity, 0.0));
}

QColor controlOutline(const QPalette &palette) {
    return mixed(background(palette), ink(Ink::primary, palette), outlineOpacity);
}

} // namespace pindle::windowtheme
