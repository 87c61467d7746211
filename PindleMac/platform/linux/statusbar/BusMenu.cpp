#include "PindleMac/platform/linux/statusbar/BusMenu.h"

#include <QCoreApplication>
#include <string_view>

namespace pindle {

namespace {

constexpr char interfaceName[] = "com.canonical.dbusmenu";
constexpr uint32_t protocolVersion = 3;
constexpr uint32_t layoutRevision = 1; ///< the items stay the same
constexpr int32_t rootId = 0;

void appendText(sd_bus_message *message, const char *name, const QByteArray &value) {
    sd_bus_message_append(message, "{sv}", name, "s", value.constData());
}

/// The name of a key in a shortcut (as GTK's and X's key symbols are called).
QByteArray keyName(const QString &key) {
    return key == QLatin1String(",") ? QByteArrayLiteral("comma") : key.toUtf8();
}

QByteArray label(const QString &title) {
    // A single underscore would mark an access key.
    return QString(title).replace(QLatin1Char('_'), QStringLiteral("__")).toUtf8();
}

} // namespace

const sd_bus_vtable *BusMenu::methods() {
    static const sd_bus_vtable table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("GetLayout", "iias", "u(ia{sv}av)", onGetLayout, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("GetGroupProperties", "aias", "a(ia{sv})", onGetGroupProperties,
                      SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("GetProperty", "is", "v", onGetProperty, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("Event", "isvu", "", onEvent, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("EventGroup", "a(isvu)", "ai", onEventGroup, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("AboutToShow", "i", "b", onAboutToShow, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("AboutToShowGroup", "ai", "aiai", onAboutToShowGroup,
                      SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_SIGNAL("ItemsPropertiesUpdated", "a(ia{sv})a(ias)", 0),
        SD_BUS_SIGNAL("LayoutUpdated", "ui", 0),
        SD_BUS_SIGNAL("ItemActivationRequested", "iu", 0),
        SD_BUS_PROPERTY("Version", "u", property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("TextDirection", "s", property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Status", "s", property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("IconThemePath", "as", property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_VTABLE_END,
    };
    return table;
}

BusMenu::BusMenu(SessionBus &bus, std::function<void()> aboutToShow)
    : bus_(bus)
    , aboutToShow_(std::move(aboutToShow)) {
    sd_bus_slot *slot = nullptr;
    sd_bus_add_object_vtable(bus_.bus(), &slot, objectPath, interfaceName, methods(), this);
    object_.reset(slot);
}

void BusMenu::setMenu(const Menu &menu) {
    menu_ = menu;
}

int BusMenu::property(sd_bus *, const char *, const char *, const char *name, sd_bus_message *reply,
                      void *, sd_bus_error *) {
    const std::string_view wanted = name;
    if (wanted == "Version")
        return sd_bus_message_append(reply, "u", protocolVersion);
    if (wanted == "TextDirection")
        return sd_bus_message_append(reply, "s", "ltr");
    if (wanted == "Status")
        return sd_bus_message_append(reply, "s", "normal");
    return sd_bus_message_append(reply, "as", 0);
}

void BusMenu::appendProperties(sd_bus_message *reply, int32_t id) const {
    sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "{sv}");
    if (id == rootId) {
        appendText(reply, "children-display", "submenu");
    } else if (const MenuItem &item = menu_[id - 1]; item.isSeparator) {
        appendText(reply, "type", "separator");
    } else {
        appendText(reply, "label", label(item.title));
        // Command is the key that means it on this desktop: Control.
        if (!item.keyEquivalent.isEmpty())
            sd_bus_message_append(reply, "{sv}", "shortcut", "aas", 1, 2, "Control",
                                  keyName(item.keyEquivalent).constData());
    }
    sd_bus_message_close_container(reply);
}

void BusMenu::appendItem(sd_bus_message *reply, int32_t id, int32_t depth) const {
    sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "ia{sv}av");
    sd_bus_message_append(reply, "i", id);
    appendProperties(reply, id);
    sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "v");
    if (id == rootId && depth != 0) {
        for (int32_t child = 1; has(child); ++child) {
            sd_bus_message_open_container(reply, SD_BUS_TYPE_VARIANT, "(ia{sv}av)");
            appendItem(reply, child, depth - 1);
            sd_bus_message_close_container(reply);
        }
    }
    sd_bus_message_close_container(reply);
    sd_bus_message_close_container(reply);
}

int BusMenu::onGetLayout(sd_bus_message *message, void *self, sd_bus_error *error) {
    int32_t parent = 0;
    int32_t depth = 0;
    sd_bus_message_read(message, "ii", &parent, &depth);
    const auto *menu = static_cast<BusMenu *>(self);
    if (!menu->has(parent))
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "There is no such item.");
    sd_bus_message *reply = nullptr;
    if (const int made = sd_bus_message_new_method_return(message, &reply); made < 0)
        return made;
    const BusMessage owned(reply);
    sd_bus_message_append(reply, "u", layoutRevision);
    menu->appendItem(reply, parent, depth);
    return sd_bus_send(nullptr, reply, nullptr);
}

int BusMenu::onGetGroupProperties(sd_bus_message *message, void *self, sd_bus_error *) {
    const auto *menu = static_cast<BusMenu *>(self);
    std::vector<int32_t> ids;
    sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "i");
    for (int32_t id = 0; sd_bus_message_read(message, "i", &id) > 0;) {
        if (menu->has(id))
            ids.push_back(id);
    }
    sd_bus_message *reply = nullptr;
    if (const int made = sd_bus_message_new_method_return(message, &reply); made < 0)
        return made;
    const BusMessage owned(reply);
    sd_bus_message_open_container(reply, SD_BUS_TYPE_ARRAY, "(ia{sv})");
    for (const int32_t id : ids) {
        sd_bus_message_open_container(reply, SD_BUS_TYPE_STRUCT, "ia{sv}");
        sd_bus_message_append(reply, "i", id);
        menu->appendProperties(reply, id);
        sd_bus_message_close_container(reply);
    }
    sd_bus_message_close_container(reply);
    return sd_bus_send(nullptr, reply, nullptr);
}

int BusMenu::onGetProperty(sd_bus_message *message, void *self, sd_bus_error *error) {
    int32_t id = 0;
    const char *name = nullptr;
    sd_bus_message_read(message, "is", &id, &name);
    const auto *menu = static_cast<BusMenu *>(self);
    if (id != rootId && menu->has(id) && std::string_view(name) == "label")
        return sd_bus_reply_method_return(message, "v", "s",
                                          label(menu->menu_[id - 1].title).constData());
    return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "There is no such property.");
}

int BusMenu::onEvent(sd_bus_message *message, void *self, sd_bus_error *) {
    int32_t id = 0;
    const char *event = nullptr;
    sd_bus_message_read(message, "is", &id, &event);
    const QByteArray name(event);
    const int sent = sd_bus_reply_method_return(message, nullptr);
    static_cast<BusMenu *>(self)->happened(id, name);
    return sent;
}

int BusMenu::onEventGroup(sd_bus_message *message, void *self, sd_bus_error *) {
    auto *menu = static_cast<BusMenu *>(self);
    sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "(isvu)");
    while (sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "isvu") > 0) {
        int32_t id = 0;
        const char *event = nullptr;
        sd_bus_message_read(message, "is", &id, &event);
        sd_bus_message_skip(message, "vu");
        sd_bus_message_exit_container(message);
        menu->happened(id, event);
    }
    return sd_bus_reply_method_return(message, "ai", 0);
}

int BusMenu::onAboutToShow(sd_bus_message *message, void *self, sd_bus_error *) {
    int32_t id = 0;
    sd_bus_message_read(message, "i", &id);
    if (id == rootId)
        static_cast<BusMenu *>(self)->open();
    return sd_bus_reply_method_return(message, "b", 0);
}

int BusMenu::onAboutToShowGroup(sd_bus_message *message, void *self, sd_bus_error *) {
    sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "i");
    for (int32_t id = 0; sd_bus_message_read(message, "i", &id) > 0;) {
        if (id == rootId)
            static_cast<BusMenu *>(self)->open();
    }
    return sd_bus_reply_method_return(message, "aiai", 0, 0);
}

void BusMenu::open() {
    announced_ = true;
    aboutToShow_();
}

void BusMenu::happened(int32_t id, const QByteArray &event) {
    if (id == rootId && event == "opened" && !announced_) {
        open(); // a host that does not announce it
    } else if (id == rootId && event == "closed") {
        announced_ = false;
    } else if (id != rootId && has(id) && event == "clicked") {
        announced_ = false;
        if (const auto action = menu_[id - 1].action)
            QMetaObject::invokeMethod(QCoreApplication::instance(), action, Qt::QueuedConnection);
    }
}

} // namespace pindle
