#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace pindle {

/// A monochrome symbol (an SVG document) in one colour on transparent ground, `size` pixels square.
QImage symbolImage(const QByteArray &svg, int size, const QColor &colour);

/// The same in colours that stand out from any ground: light, with a dark edge.
QImage symbolImageForAnyGround(const QByteArray &svg, int size);

/// The colour for a symbol on this ground, by what its opaque pixels are on average.
QColor symbolColour(const QImage &ground);

} // namespace pindle
