#pragma once

#include "PindleMac/platform/StatusBar.h"

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <xcb/xcb.h>

namespace pindle {

class XConnection;

/// The icon as a window inside a system tray (System Tray Protocol and XEmbed, freedesktop.org). It
/// follows the tray as it comes and goes, by the events of its selection. Main thread.
class EmbeddedIcon {
public:
    /// `clicked` is told of a button that went down and up on the icon. The connection must
    /// outlive it.
    EmbeddedIcon(XConnection &connection, std::function<void(EventType)> clicked);
    ~EmbeddedIcon();
    Q_DISABLE_COPY_MOVE(EmbeddedIcon)

    /// The symbol as an SVG document, and the icon's name.
    void setSymbol(const QByteArray &svg, const QString &name);
    /// Whether to be in a tray whenever there is one.
    void setWanted(bool wanted);
    /// In pixels of the X screen; absent when it is in no tray.
    std::optional<QRect> frame();

private:
    struct Visual {
        xcb_visualid_t id = XCB_NONE;
        uint8_t depth = 0;
        bool hasAlpha = false;
    };

    void watchTray();
    void handle(const xcb_generic_event_t &event);
    void followTray();
    void dock(xcb_window_t tray);
    void makeWindow(const Visual &visual);
    void describeWindow();
    void leave();
    Visual visualOf(xcb_window_t tray);
    void released(const xcb_button_release_event_t &event);
    void resized(const xcb_configure_notify_event_t &event);
    void paint();
    QImage ground();

    XConnection &connection_;
    std::function<void(EventType)> clicked_;
    QByteArray svg_;
    QByteArray name_;
    bool wanted_ = false;
    xcb_atom_t selection_ = XCB_ATOM_NONE; ///< owned by the tray of this screen
    uint8_t selectionEvent_ = 0;
    xcb_window_t tray_ = XCB_NONE;
    xcb_window_t window_ = XCB_NONE;
    xcb_gcontext_t graphics_ = XCB_NONE;
    Visual visual_;
    QSize size_;
    bool embedded_ = false;
    xcb_button_t pressed_ = 0;
    std::shared_ptr<EmbeddedIcon *> self_; ///< for the event handler, which outlives this
};

} // namespace pindle
