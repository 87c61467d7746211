#pragma once

#include <QPointF>
#include <QWidget>

namespace pindle {

class ContentView;
class WindowServer;

/// The panel's window: borderless, translucent, above all others, shown without taking the
/// keyboard, which it takes on a click. Its frame is fixed; where the content is lower, the rest of
/// the frame is neither seen nor clicked. Main thread only.
class CursorPopoverPanel : public QWidget {
    Q_OBJECT
public:
    /// In logical pixels.
    static constexpr QSize panelSize{420, 560};

    /// Takes the content over; the window server must outlive the panel.
    CursorPopoverPanel(ContentView *content, WindowServer &windowServer);

    bool canBecomeKeyWindow() const { return true; }
    bool canBecomeMainWindow() const { return false; }

    /// Makes the window and everything it needs for being painted, so that the first show is as
    /// quick as any other; nothing becomes visible.
    void prepare();
    /// Sets the frame to the bottom-left corner `origin` and the fixed size, for an anchor the
    /// content is to stay close to; both in points of the global space.
    void setFrame(QPointF origin, QPointF anchor);
    /// Shows the panel above all windows with its present state, without giving it the keyboard.
    void orderFrontRegardless();
    void orderOut();
    /// What losing the keyboard does: the panel hides, unless the keyboard went to one of the
    /// system's own questions or to a menu of the panel itself.
    void resignKeyWindow();

Q_SIGNALS:
    /// The panel has lost the keyboard and is no longer the key window.
    void didResignKey();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void createWindow();
    void placeContent();
    void becomeKey();
    bool isKeyboardLent() const;
    void awaitKeyboard();

    WindowServer &windowServer_;
    ContentView *content_;
    QPointF origin_;
    QPointF anchor_;
};

} // namespace pindle
