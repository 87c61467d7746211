#pragma once

#include "PindleMac/platform/Screens.h"

#include <QRect>
#include <QSize>

namespace pindle {

/// Space reserved at one edge of the whole X screen, in its pixels: an edge's part of
/// _NET_WM_STRUT_PARTIAL (EWMH). `first` and `last` bound the part of the edge, inclusive.
struct Strut {
    enum class Edge { left, right, top, bottom };
    Edge edge = Edge::left;
    int width = 0;
    int first = 0;
    int last = 0;
    bool operator==(const Strut &) const = default;
};

/// The four parts of _NET_WM_STRUT_PARTIAL's twelve numbers, or of _NET_WM_STRUT's four, which
/// reserve whole edges; empty parts are left out. Empty for any other count.
QList<Strut> strutsOf(const QList<quint32> &numbers, QSize wholeScreen);

/// What `struts` leave of a monitor, all in pixels of the whole X screen. A strut that would leave
/// nothing belongs to a monitor further out and is not counted.
QRect areaWithoutStruts(QRect monitor, QSize wholeScreen, const QList<Strut> &struts);

/// A part of a monitor in points, y downwards. `frame` is the monitor in points and `pixels` the
/// monitor in pixels.
QRectF partInPoints(QRect part, QRect pixels, QRectF frame);

/// A rectangle of the toolkit's space (y downwards) in the global space (origin at the bottom-left
/// corner of `mainFrame`, y upwards).
QRectF flipped(QRectF rectangle, QRectF mainFrame);

/// The same for a point.
QPointF flipped(QPointF point, QRectF mainFrame);

} // namespace pindle
