#pragma once

#include "PindleMac/platform/linux/statusbar/BusMenu.h"

#include <QByteArray>

namespace pindle {

/// The icon as the desktop's panel draws it, told over the session bus
/// (org.kde.StatusNotifierItem, as in the Status Notifier Item specification of freedesktop.org).
/// It follows the watcher as it comes and goes, by the bus's own signals. Main thread.
class NotifierItem {
public:
    struct Callbacks {
        std::function<void(EventType)> clicked; ///< the host leaves the menu to us
        std::function<void()> menuAboutToShow;  ///< the host draws the menu
        /// A host shows the icon, or none does any longer.
        std::function<void(bool)> hostedChanged;
    };

    NotifierItem(SessionBus &bus, Callbacks callbacks);
    Q_DISABLE_COPY_MOVE(NotifierItem)

    /// The symbol as an SVG document, and the icon's name.
    void setSymbol(const QByteArray &svg, const QString &name);
    BusMenu &menu() { return menu_; }
    bool isHosted() const { return hosted_; }

private:
    static int onActivate(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onContextMenu(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onIgnored(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onWatcherOwner(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onWatcherFound(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onHostsChanged(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onHostsKnown(sd_bus_message *message, void *self, sd_bus_error *error);
    static int property(sd_bus *bus, const char *path, const char *interface, const char *name,
                        sd_bus_message *reply, void *self, sd_bus_error *error);
    static const sd_bus_vtable *methods();

    int appendProperty(const QByteArray &name, sd_bus_message *reply) const;
    int appendPixmaps(sd_bus_message *reply) const;
    void watch();
    void setWatcherPresent(bool present);
    void registerWithWatcher();
    void askForHosts();
    void setHosted(bool hosted);
    /// Sends a call that is answered from the event loop.
    BusSlot callLater(sd_bus_message *call, sd_bus_message_handler_t answered);

    SessionBus &bus_;
    Callbacks callbacks_;
    BusMenu menu_;
    QByteArray svg_;
    QByteArray name_;
    bool hosted_ = false;
    BusSlot object_;
    BusSlot ownerMatch_;
    BusSlot hostsMatch_;
    BusSlot goneMatch_;
    BusSlot ownerCall_;
    BusSlot hostsCall_;
};

} // namespace pindle
