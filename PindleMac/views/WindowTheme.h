#pragma once

#include <QColor>
#include <QPalette>

/// Colours of the ordinary windows, which follow the desktop's palette, light or dark. Text is
/// readable (4.5:1, WCAG 2) on the window and on the cards that lie on it.
namespace pindle::windowtheme {

enum class Ink { primary, secondary, error };

QColor background(const QPalette &palette);
QColor ink(Ink ink, const QPalette &palette);
/// The desktop's highlight colour, darkened where white text on it would be hard to read.
QColor accent(const QPalette &palette);
/// The highlight colour, changed where a line of it would not stand out from the window (3:1).
QColor ring(const QPalette &palette);
/// Fill of controls that are not prominent, and what outlines them.
QColor controlFill(const QPalette &palette);
QColor controlOutline(const QPalette &palette);

} // namespace pindle::windowtheme
