#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

/// Plain text over as many lines as it needs: never interpreted, never cut off, broken inside a
/// word only where the word alone is wider than a line. Line breaks in the text are kept. Widths
/// and heights are in logical pixels.
namespace pindle::textblock {

/// Width of the text on as few lines as it has line breaks.
double naturalWidth(const QString &text, const QFont &font);
/// Width of the longest part that should stay on one line.
double longestWordWidth(const QString &text, const QFont &font);
double height(const QString &text, const QFont &font, double width);
/// Draws with the painter's pen, from the rectangle's upper edge.
void draw(QPainter &painter, const QRectF &rect, const QString &text, const QFont &font,
          Qt::Alignment alignment);

} // namespace pindle::textblock
