#include "PindleMac/PanelPlacement.h"

#include <algorithm>

namespace pindle {

namespace {

/// Stands in for the usable area while no monitor is attached.
constexpr QRectF areaWithoutScreens(0, 0, 1440, 900);

// In this space a QRectF's top() is its lowest y.
double minY(const QRectF &rect) {
    return rect.y();
}

double maxY(const QRectF &rect) {
    return rect.y() + rect.height();
}

double maxX(const QRectF &rect) {
    return rect.x() + rect.width();
}

/// Neighbouring screens share an edge; the lower and right edges belong to the neighbour, so that a
/// point is in one screen only.
bool contains(const QRectF &frame, QPointF point) {
    return point.x() >= frame.x() && point.x() < maxX(frame) && point.y() > minY(frame) &&
           point.y() <= maxY(frame);
}

QRectF usableArea(QPointF point, const QList<Screen> &screens,
                  const std::optional<Screen> &mainScreen) {
    const auto holding = std::ranges::find_if(
        screens, [point](const Screen &screen) { return contains(screen.frame, point); });
    if (holding != screens.end())
        return holding->visibleFrame;
    return mainScreen ? mainScreen->visibleFrame : areaWithoutScreens;
}

} // namespace

QPointF panelOrigin(std::optional<QPointF> anchor, QPointF pointer, const QList<Screen> &screens,
                    const std::optional<Screen> &mainScreen, QSizeF size) {
    const QPointF point = anchor.value_or(pointer);
    const QRectF area = usableArea(point, screens, mainScreen);
    const double lowest = minY(area) + panelMargin;
    const double highest = maxY(area) - size.height() - panelMargin;

    double x = point.x() - size.width() / 2;
    x = std::max(x, area.x() + panelMargin);
    x = std::min(x, maxX(area) - size.width() - panelMargin);

    double y = point.y() - size.height() - panelGap;
    if (y < lowest)
        y = std::min(point.y() + panelGap, highest);
    y = std::max(y, lowest);
    y = std::min(y, highest);
    return {x, y};
}

double cardOffset(QPointF anchor, QPointF panelOrigin, double panelHeight, double cardHeight) {
    const double anchorBelowTop = panelOrigin.y() + panelHeight - anchor.y();
    const double room = std::max(0.0, panelHeight - cardHeight);
    return std::clamp(anchorBelowTop - panelGap - cardHeight, 0.0, room);
}

QPoint toolkitTopLeft(QPointF origin, double height, const QRectF &mainScreen) {
    const double bottom = mainScreen.y() + mainScreen.height();
    return QPointF(origin.x() + mainScreen.x(), bottom - origin.y() - height).toPoint();
}

} // namespace pindle
