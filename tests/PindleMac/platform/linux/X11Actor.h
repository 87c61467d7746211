#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace pindle::test {

// Positions of the ANSI keyboard as X key codes, and their kVK_ANSI_* codes where tests use them.
inline constexpr xcb_keycode_t keyE = 26, keyK = 45, keyC = 54, keyD = 40, keyA = 38;
inline constexpr xcb_keycode_t keyShift = 50, keySuper = 133, keyControl = 37, keyAlt = 64;
inline constexpr xcb_keycode_t keyCapsLock = 66, keyNumLock = 77, keyInsert = 118;
inline constexpr quint32 ansiE = 14, ansiK = 40, ansiC = 8;

/// Runs the event loop until `done` or until the time is over; tells whether it was done.
bool waitUntil(const std::function<bool()> &done, int milliseconds = 3000);
/// Runs the event loop for a while, to see that something does not happen.
void settle(int milliseconds = 150);

/// Runs a program to its end; false when it cannot be run or fails.
bool run(const QString &program, const QStringList &arguments);

/// Another program at the same display, or at the outer one of a nested desktop: it presses keys,
/// grabs and shows windows on a connection of its own.
class Actor {
public:
    /// A key event as a window received it.
    struct Key {
        bool press = false;
        xcb_keycode_t key = 0;
        uint16_t state = 0;
    };

    explicit Actor(const char *display = nullptr);
    ~Actor();
    Q_DISABLE_COPY_MOVE(Actor)

    xcb_connection_t *xcb() const { return connection_; }
    xcb_window_t root() const { return root_; }
    void sync();

    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);
    void tap(xcb_keycode_t key);
    /// Presses the keys in order, releases them in the opposite order.
    void chord(const std::vector<xcb_keycode_t> &keys);
    void movePointer(int x, int y);
    void click(int x, int y);

    bool grabKey(uint16_t modifiers, xcb_keycode_t key);
    bool grabKeyboard();
    void ungrabKeyboard();
    /// The keys applications see as down.
    std::vector<int> keysDown();
    uint8_t lockedModifiers();
    /// Makes one of the layouts the active one.
    void lockGroup(uint8_t group);

    /// Shows a window of this client and waits until it is active and has the keyboard.
    xcb_window_t showWindow(const QByteArray &instance, const QByteArray &name);
    void setProperty(xcb_window_t window, const char *property, xcb_atom_t type,
                     const std::vector<uint32_t> &values);
    /// The key events received so far.
    std::vector<Key> keys();
    void forgetKeys();

private:
    xcb_atom_t atom(const char *name);
    void read();

    xcb_connection_t *connection_;
    xcb_window_t root_ = XCB_NONE;
    std::vector<Key> keys_;
};

/// The window the window manager calls active.
xcb_window_t activeWindow();

/// A program of the desktop, ended with the object.
class Program {
public:
    Program(const QString &name, const QStringList &arguments);
    ~Program();
    Q_DISABLE_COPY_MOVE(Program)

    /// Waits until a window of the class is the active one.
    bool waitActive(const QString &windowClass);
    bool running() { return process_.state() == QProcess::Running; }

private:
    QProcess process_;
};

} // namespace pindle::test
