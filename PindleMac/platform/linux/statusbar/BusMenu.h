#pragma once

#include "PindleMac/platform/StatusBar.h"
#include "PindleMac/platform/linux/bus/SessionBus.h"

namespace pindle {

/// A menu for a host that draws it (com.canonical.dbusmenu, version 3). Main thread.
class BusMenu {
public:
    static constexpr char objectPath[] = "/MenuBar";

    /// `aboutToShow` is called before the menu opens. The bus must outlive it.
    BusMenu(SessionBus &bus, std::function<void()> aboutToShow);

    void setMenu(const Menu &menu);

private:
    static int onGetLayout(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onGetGroupProperties(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onGetProperty(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onEvent(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onEventGroup(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onAboutToShow(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onAboutToShowGroup(sd_bus_message *message, void *self, sd_bus_error *error);
    static int property(sd_bus *bus, const char *path, const char *interface, const char *name,
                        sd_bus_message *reply, void *self, sd_bus_error *error);
    static const sd_bus_vtable *methods();

    bool has(int32_t id) const { return id >= 0 && id <= menu_.size(); }
    void appendItem(sd_bus_message *reply, int32_t id, int32_t depth) const;
    void appendProperties(sd_bus_message *reply, int32_t id) const;
    void happened(int32_t id, const QByteArray &event);
    void open();

    SessionBus &bus_;
    std::function<void()> aboutToShow_;
    Menu menu_;              ///< the item of id 1 is the first; 0 is the menu itself
    bool announced_ = false; ///< it has been said that the menu is about to open
    BusSlot object_;
};

} // namespace pindle
