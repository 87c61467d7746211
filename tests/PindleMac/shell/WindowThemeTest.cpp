#include "PindleMac/views/WindowTheme.h"
#include "PindleMac/views/Theme.h"
#include "tests/PindleMac/shell/WindowPalettes.h"

#include <gtest/gtest.h>

namespace pindle {
namespace {

constexpr double readable = 4.5;
constexpr double distinguishable = 3.0;

using shelltest::NamedPalette;
using windowtheme::Ink;

QList<NamedPalette> allPalettes() {
    return shelltest::desktopPalettes() + shelltest::difficultPalettes();
}

/// Everything text stands on: the window, the cards, the badge on a card.
QList<QColor> grounds(const QPalette &palette) {
    const QColor window = windowtheme::background(palette);
    const QColor card = theme::blended(theme::black(0.04), window);
    return {window, card, theme::blended(theme::black(0.05), window),
            theme::blended(theme::black(0.06), card)};
}

} // namespace

TEST(WindowTheme, everyTextIsReadableOnTheWindowAndItsCards) {
    for (const auto &[name, palette] : allPalettes()) {
        for (const Ink ink : {Ink::primary, Ink::secondary, Ink::error}) {
            const QColor colour = windowtheme::ink(ink, palette);
            for (const QColor &ground : grounds(palette))
                EXPECT_GE(theme::contrastRatio(colour, ground), readable)
                    << qPrintable(name) << " ink " << static_cast<int>(ink) << ' '
                    << qPrintable(colour.name()) << " on " << qPrintable(ground.name());
        }
    }
}

TEST(WindowTheme, whiteIsReadableOnTheAccentColour) {
    for (const auto &[name, palette] : allPalettes())
        EXPECT_GE(theme::contrastRatio(Qt::white, windowtheme::accent(palette)), readable)
            << qPrintable(name);
}

TEST(WindowTheme, labelsAreReadableOnControls) {
    for (const auto &[name, palette] : allPalettes()) {
        const QColor label = windowtheme::ink(Ink::primary, palette);
        EXPECT_GE(theme::contrastRatio(label, windowtheme::controlFill(palette)), readable)
            << qPrintable(name);
    }
}

TEST(WindowTheme, theRingStandsOutFromTheWindow) {
    for (const auto &[name, palette] : allPalettes()) {
        for (const QColor &ground : grounds(palette))
            EXPECT_GE(theme::contrastRatio(windowtheme::ring(palette), ground), distinguishable)
                << qPrintable(name);
    }
}

TEST(WindowTheme, secondaryTextIsFainterThanPrimaryText) {
    for (const auto &[name, palette] : shelltest::desktopPalettes()) {
        const QColor window = windowtheme::background(palette);
        EXPECT_LT(theme::contrastRatio(windowtheme::ink(Ink::secondary, palette), window),
                  theme::contrastRatio(windowtheme::ink(Ink::primary, palette), window))
            << qPrintable(name);
    }
}

TEST(WindowTheme, errorsAreRed) {
    for (const auto &[name, palette] : allPalettes()) {
        const QColor red = windowtheme::ink(Ink::error, palette);
        // Where only white or black can be read, readable comes before red.
        if (red == QColor(Qt::white) || red == QColor(Qt::black))
            continue;
        EXPECT_GT(red.red(), red.green()) << qPrintable(name);
        EXPECT_GT(red.red(), red.blue()) << qPrintable(name);
    }
    EXPECT_GT(windowtheme::ink(Ink::error, shelltest::desktopPalettes()[0].palette).red(), 150);
    EXPECT_GT(windowtheme::ink(Ink::error, shelltest::desktopPalettes()[1].palette).red(), 200);
}

TEST(WindowTheme, theWindowsColourIsTheDesktops) {
    for (const auto &[name, palette] : allPalettes())
        EXPECT_EQ(windowtheme::background(palette), palette.color(QPalette::Window))
            << qPrintable(name);
}

TEST(WindowTheme, aReadableAccentIsTheDesktopsOwn) {
    QPalette palette = shelltest::desktopPalettes()[0].palette;
    palette.setColor(QPalette::Highlight, QColor(0x00, 0x50, 0xa0));
    EXPECT_EQ(windowtheme::accent(palette), QColor(0x00, 0x50, 0xa0));
}

} // namespace pindle
