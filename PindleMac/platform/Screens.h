#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>
#include <optional>

namespace pindle {

/// One monitor. Points of the global space: origin at the bottom-left corner of the main screen,
/// y growing upwards; a rectangle's top() is therefore its lowest y.
struct Screen {
    QRectF frame;        ///< the full area
    QRectF visibleFrame; ///< without panels and docks
    bool operator==(const Screen &) const = default;
};

/// Monitors and pointer. Called on the main thread.
class Screens {
public:
    virtual ~Screens() = default;

    /// NSEvent.mouseLocation, in points of the global space.
    virtual QPointF mouseLocation() = 0;
    /// All monitors in the platform's order; may be empty.
    virtual QList<Screen> screens() = 0;
    /// Absent when there is no monitor.
    virtual std::optional<Screen> mainScreen() = 0;
};

} // namespace pindle
