#pragma once

#include "PindleMac/platform/Screens.h"

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <optional>

/// Where the panel goes. Points of the global space have their origin at the bottom-left corner of
/// the main screen, y growing upwards; nothing here has a state.
namespace pindle {

/// Distance kept between the panel and the edges of the usable area, in points.
inline constexpr double panelMargin = 18;
/// Distance kept between the panel and its anchor, in points.
inline constexpr double panelGap = 20;

/// The bottom-left corner of a panel of `size` wanted at `anchor`, or at `pointer` when there is no
/// anchor: centred below it, above it where there is no room below, always inside the usable area
/// of the first screen that holds the point, else of the main screen. Where the area is too small
/// for both margins, the ones at its right and upper edges are kept.
QPointF panelOrigin(std::optional<QPointF> anchor, QPointF pointer, const QList<Screen> &screens,
                    const std::optional<Screen> &mainScreen, QSizeF size);

/// Distance from the top of the panel's frame to the card shown in it, in points, when the card is
/// lower than the frame: the card stays at the top of a frame below its anchor and at the bottom of
/// one above it, a gap away from the anchor wherever the frame leaves the choice.
double cardOffset(QPointF anchor, QPointF panelOrigin, double panelHeight, double cardHeight);

/// The toolkit's position (y growing downwards, `mainScreen` being the main screen's geometry
/// there) of the top-left corner of a frame with the bottom-left corner `origin`.
QPoint toolkitTopLeft(QPointF origin, double height, const QRectF &mainScreen);

} // namespace pindle
