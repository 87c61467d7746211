#include "PindleMac/platform/linux/statusbar/NotifierItem.h"

#include "PindleMac/platform/linux/statusbar/SymbolImage.h"

#include <QtEndian>
#include <array>
#include <string>

namespace pindle {

namespace {

constexpr char itemInterface[] = "org.kde.StatusNotifierItem";
constexpr char itemPath[] = "/StatusNotifierItem";
constexpr char watcherName[] = "org.kde.StatusNotifierWatcher";
constexpr char watcherPath[] = "/StatusNotifierWatcher";
constexpr char busName[] = "org.freedesktop.DBus";
constexpr std::array iconSizes = {16, 22, 24, 32, 48, 64}; ///< pixels

// The kinds of signature the properties have.
constexpr char pixmaps[] = "a(iiay)";
constexpr char toolTip[] = "(sa(iiay)ss)";

} // namespace

const sd_bus_vtable *NotifierItem::methods() {
    static const sd_bus_vtable table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("Activate", "ii", "", onActivate, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("ContextMenu", "ii", "", onContextMenu, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("SecondaryActivate", "ii", "", onIgnored, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("Scroll", "is", "", onIgnored, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_SIGNAL("NewTitle", "", 0),
        SD_BUS_SIGNAL("NewIcon", "", 0),
        SD_BUS_SIGNAL("NewAttentionIcon", "", 0),
        SD_BUS_SIGNAL("NewOverlayIcon", "", 0),
        SD_BUS_SIGNAL("NewToolTip", "", 0),
        SD_BUS_SIGNAL("NewStatus", "s", 0),
        SD_BUS_PROPERTY("Category", "s", property, 0, 0),
        SD_BUS_PROPERTY("Id", "s", property, 0, 0),
        SD_BUS_PROPERTY("Title", "s", property, 0, 0),
        SD_BUS_PROPERTY("Status", "s", property, 0, 0),
        SD_BUS_PROPERTY("WindowId", "i", property, 0, 0),
        SD_BUS_PROPERTY("IconThemePath", "s", property, 0, 0),
        SD_BUS_PROPERTY("IconName", "s", property, 0, 0),
        SD_BUS_PROPERTY("IconPixmap", pixmaps, property, 0, 0),
        SD_BUS_PROPERTY("IconAccessibleDesc", "s", property, 0, 0),
        SD_BUS_PROPERTY("OverlayIconName", "s", property, 0, 0),
        SD_BUS_PROPERTY("OverlayIconPixmap", pixmaps, property, 0, 0),
        SD_BUS_PROPERTY("AttentionIconName", "s", property, 0, 0),
        SD_BUS_PROPERTY("AttentionIconPixmap", pixmaps, property, 0, 0),
        SD_BUS_PROPERTY("AttentionMovieName", "s", property, 0, 0),
        SD_BUS_PROPERTY("ToolTip", toolTip, property, 0, 0),
        SD_BUS_PROPERTY("ItemIsMenu", "b", property, 0, 0),
        SD_BUS_PROPERTY("Menu", "o", property, 0, 0),
        SD_BUS_VTABLE_END,
    };
    return table;
}

NotifierItem::NotifierItem(SessionBus &bus, Callbacks callbacks)
    : bus_(bus)
    , callbacks_(std::move(callbacks))
    , menu_(bus, [this] { callbacks_.menuAboutToShow(); }) {
    sd_bus_slot *slot = nullptr;
    sd_bus_add_object_vtable(bus_.bus(), &slot, itemPath, itemInterface, methods(), this);
    object_.reset(slot);
    watch();
}

void NotifierItem::watch() {
    const auto match = [this](const char *sender, const char *path, const char *interface,
                              const char *member, sd_bus_message_handler_t handler) {
        sd_bus_slot *slot = nullptr;
        sd_bus_match_signal_async(bus_.bus(), &slot, sender, path, interface, member, handler,
                                  nullptr, this);
        return BusSlot(slot);
    };
    sd_bus_slot *slot = nullptr;
    const std::string rule = std::string("type='signal',sender='org.freedesktop.DBus',"
                                         "interface='org.freedesktop.DBus',"
                                         "member='NameOwnerChanged',arg0='") +
                             watcherName + "'";
    sd_bus_add_match_async(bus_.bus(), &slot, rule.c_str(), onWatcherOwner, nullptr, this);
    ownerMatch_.reset(slot);
    hostsMatch_ = match(watcherName, watcherPath, watcherName, "StatusNotifierHostRegistered",
                        onHostsChanged);
    goneMatch_ = match(watcherName, watcherPath, watcherName, "StatusNotifierHostUnregistered",
                       onHostsChanged);
    const auto ask =
        bus_.connection().method(busName, "/org/freedesktop/DBus", busName, "NameHasOwner");
    sd_bus_message_append(ask.get(), "s", watcherName);
    ownerCall_ = callLater(ask.get(), onWatcherFound);
    bus_.flush();
}

BusSlot NotifierItem::callLater(sd_bus_message *call, sd_bus_message_handler_t answered) {
    sd_bus_slot *slot = nullptr;
    sd_bus_call_async(bus_.bus(), &slot, call, answered, this, UINT64_MAX);
    return BusSlot(slot);
}

void NotifierItem::setSymbol(const QByteArray &svg, const QString &name) {
    svg_ = svg;
    name_ = name.toUtf8();
    sd_bus_emit_signal(bus_.bus(), itemPath, itemInterface, "NewIcon", nullptr);
    sd_bus_emit_signal(bus_.bus(), itemPath, itemInterface, "NewTitle", nullptr);
    bus_.flush();
}

int NotifierItem::onWatcherOwner(sd_bus_message *message, void *self, sd_bus_error *) {
    const char *name = nullptr;
    const char *before = nullptr;
    const char *now = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &now) >= 0)
        static_cast<NotifierItem *>(self)->setWatcherPresent(*now != '\0');
    return 0;
}

int NotifierItem::onWatcherFound(sd_bus_message *message, void *self, sd_bus_error *) {
    int present = 0;
    if (sd_bus_message_read(message, "b", &present) >= 0 && present != 0)
        static_cast<NotifierItem *>(self)->setWatcherPresent(true);
    return 0;
}

void NotifierItem::setWatcherPresent(bool present) {
    if (!present) {
        hostsCall_.reset();
        return setHosted(false);
    }
    registerWithWatcher();
    askForHosts();
}

void NotifierItem::registerWithWatcher() {
    const auto call = bus_.connection().method(watcherName, watcherPath, watcherName,
                                               "RegisterStatusNotifierItem");
    const char *self = nullptr;
    sd_bus_get_unique_name(bus_.bus(), &self);
    sd_bus_message_append(call.get(), "s", self);
    sd_bus_message_set_expect_reply(call.get(), 0);
    sd_bus_message_set_auto_start(call.get(), 0);
    sd_bus_send(bus_.bus(), call.get(), nullptr);
}

void NotifierItem::askForHosts() {
    const auto ask = bus_.connection().property(watcherName, watcherPath, watcherName,
                                                "IsStatusNotifierHostRegistered");
    sd_bus_message_set_auto_start(ask.get(), 0);
    hostsCall_ = callLater(ask.get(), onHostsKnown);
}

int NotifierItem::onHostsChanged(sd_bus_message *, void *self, sd_bus_error *) {
    static_cast<NotifierItem *>(self)->askForHosts();
    return 0;
}

int NotifierItem::onHostsKnown(sd_bus_message *message, void *self, sd_bus_error *) {
    int registered = 0;
    const bool known = sd_bus_message_is_method_error(message, nullptr) <= 0 &&
                       sd_bus_message_read(message, "v", "b", &registered) >= 0;
    static_cast<NotifierItem *>(self)->setHosted(known && registered != 0);
    return 0;
}

void NotifierItem::setHosted(bool hosted) {
    if (std::exchange(hosted_, hosted) != hosted)
        callbacks_.hostedChanged(hosted);
}

int NotifierItem::onActivate(sd_bus_message *message, void *self, sd_bus_error *) {
    const int sent = sd_bus_reply_method_return(message, nullptr);
    static_cast<NotifierItem *>(self)->callbacks_.clicked(EventType::leftMouseUp);
    return sent;
}

int NotifierItem::onContextMenu(sd_bus_message *message, void *self, sd_bus_error *) {
    const int sent = sd_bus_reply_method_return(message, nullptr);
    static_cast<NotifierItem *>(self)->callbacks_.clicked(EventType::rightMouseUp);
    return sent;
}

int NotifierItem::onIgnored(sd_bus_message *message, void *, sd_bus_error *) {
    return sd_bus_reply_method_return(message, nullptr);
}

int NotifierItem::property(sd_bus *, const char *, const char *, const char *name,
                           sd_bus_message *reply, void *self, sd_bus_error *) {
    return static_cast<NotifierItem *>(self)->appendProperty(name, reply);
}

int NotifierItem::appendProperty(const QByteArray &name, sd_bus_message *reply) const {
    if (name == "IconPixmap")
        return appendPixmaps(reply);
    if (name.endsWith("Pixmap"))
        return sd_bus_message_append(reply, pixmaps, 0);
    if (name == "ToolTip")
        return sd_bus_message_append(reply, toolTip, "", 0, name_.constData(), "");
    if (name == "WindowId")
        return sd_bus_message_append(reply, "i", 0);
    if (name == "ItemIsMenu")
        return sd_bus_message_append(reply, "b", 0);
    if (name == "Menu")
        return sd_bus_message_append(reply, "o", BusMenu::objectPath);
    const QByteArray text = name == "Category" ? QByteArrayLiteral("ApplicationStatus")
                            : name == "Id"     ? QByteArrayLiteral("app.pindle.Pindle")
                            : name == "Status" ? QByteArrayLiteral("Active")
                            : name == "Title" || name == "IconAccessibleDesc" ? name_
                                                                              : QByteArray();
    return sd_bus_message_append(reply, "s", text.constData());
}

/// Width, height and pixels as ARGB in network byte order.
int NotifierItem::appendPixmaps(sd_bus_message *reply) const {
    sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "(iiay)");
    for (const int size : iconSizes) {
        if (svg_.isEmpty())
            break;
        const QImage image =
            symbolImageForAnyGround(svg_, size).convertToFormat(QImage::Format_ARGB32);
        std::vector<quint32> pixels(static_cast<std::size_t>(size) *
                                    static_cast<std::size_t>(size));
        qToBigEndian<quint32>(image.constBits(), qsizetype(pixels.size()), pixels.data());
        sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "iiay");
        sd_bus_message_append(reply, "ii", size, size);
        sd_bus_message_append_array(reply, SD_BUS_TYPE_BYTE, pixels.data(),
                                    pixels.size() * sizeof(quint32));
        sd_bus_message_close_container(reply);
    }
    return sd_bus_message_close_container(reply);
}

} // namespace pindle
