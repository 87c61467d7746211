#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

/// The symbol images, monochrome drawings that take the colour they are asked for.
namespace pindle::symbols {

/// Whether there is a drawing of this name.
bool exists(const QString &name);
/// The drawing as an SVG document; empty when there is none.
QByteArray document(const QString &name);
/// Draws the symbol to fill `rect`, sharp at the painter's resolution; nothing when there is none.
void draw(QPainter &painter, const QString &name, const QRectF &rect, const QColor &colour);

} // namespace pindle::symbols
