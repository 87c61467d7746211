#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

/// Fonts of all windows, and colours of the panel. The panel is light whatever the desktop's theme
/// is, so nothing here but the accent and the font's family and size comes from the desktop.
namespace pindle::theme {

enum class TextStyle {
    title,
    headline,
    subheadline,
    caption,
    captionSemibold,
    // Those of the ordinary windows only.
    windowTitle,
    body,
    subheadlineSemibold,
    captionBold,
    captionMonospaced,
};

/// The application's font in one of the styles, or the desktop's fixed one. The sizes keep their
/// proportions to each other and follow the application's font, within what the panel's width can
/// bear.
QFont font(TextStyle style);

QColor primaryText();
/// Hints and captions; readable (4.5:1) on every background of the panel.
QColor secondaryText();
QColor white(double opacity);
QColor black(double opacity);

/// Message colours: each foreground is readable (4.5:1) on its own tint over the panel.
QColor red();
QColor green();
QColor orange();
QColor redTint();
QColor greenTint();
QColor yellowTint();

/// Symbol colours, distinguishable (3:1) on their own tint.
QColor symbolGreen();
QColor symbolBlue();
QColor symbolIndigo();
QColor symbolOrange();
/// The desktop's highlight colour, darkened where it would not stand out on white (3:1).
QColor accent();

/// The panel's background runs from the first colour at its top-left to the second at its
/// bottom-right corner.
QColor backgroundStart();
QColor backgroundEnd();

/// For the panel's windows, so that text fields and menus are dark on light as well.
QPalette palette();

/// Contrast of two opaque colours as WCAG 2 defines it, 1 to 21.
double contrastRatio(const QColor &first, const QColor &second);
/// What is seen of a translucent colour on an opaque one.
QColor blended(const QColor &over, const QColor &below);

} // namespace pindle::theme
