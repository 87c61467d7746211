#pragma once

#include <QList>
#include <QRectF>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

namespace pindle {

/// NSEvent.EventType, with its values, and the masks made of them.
enum class EventType : int { leftMouseUp = 2, rightMouseUp = 4 };
using EventTypeMask = quint64;
constexpr EventTypeMask maskOf(EventType type) {
    return EventTypeMask(1) << static_cast<int>(type);
}

/// NSControl.ImagePosition, with its values.
enum class ImagePosition : int { noImage = 0, imageOnly = 1 };

/// An item of a menu, or a line between two of them.
struct MenuItem {
    QString title;
    QString keyEquivalent; ///< a character that chooses it together with Command; empty for none
    std::function<void()> action;
    bool isSeparator = false;

    static MenuItem separator() { return {{}, {}, {}, true}; }
};
using Menu = QList<MenuItem>;

/// The program's icon among those of the desktop. It is shown wherever the desktop has a place for
/// it, which may come, go and come again at any time; it disappears with the object. All calls and
/// all callbacks on the main thread.
class StatusItem {
public:
    /// `event` is what the item is clicked with; absent when the desktop does not tell.
    using Action = std::function<void(std::optional<EventType> event)>;

    virtual ~StatusItem() = default;

    /// A system symbol by its name, in colours that suit the place, and what a screen reader says.
    virtual void setImage(const QString &symbolName, const QString &accessibilityDescription) = 0;
    virtual void setImagePosition(ImagePosition position) = 0;
    /// Which events call the action.
    virtual void sendActionOn(EventTypeMask mask) = 0;
    virtual void setAction(Action action) = 0;

    /// The menu that a right click is going to bring. A desktop that draws menus itself reads it
    /// beforehand and calls the action, as for any right click, when it is about to show it.
    virtual void announceMenu(const Menu &menu) = 0;
    /// Opens `menu` at the item, for once: the next left click calls the action again. Returns at
    /// once; the chosen item's action runs after the menu has closed.
    virtual void popUpMenu(const Menu &menu) = 0;

    /// Where the item is on the screen, in points of the global space (a QRectF's top() is its
    /// lowest y); absent when the desktop does not tell.
    virtual std::optional<QRectF> frame() = 0;
};

/// NSStatusBar.system. Called on the main thread.
class StatusBar {
public:
    /// NSStatusItem.variableLength.
    static constexpr double variableLength = -1;

    virtual ~StatusBar() = default;

    /// A new item; null where there can be none. The status bar must outlive it.
    virtual std::unique_ptr<StatusItem> statusItem(double length) = 0;
};

} // namespace pindle
