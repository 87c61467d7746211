#include "PindleMac/platform/linux/statusbar/EmbeddedIcon.h"

#include "PindleMac/platform/linux/statusbar/SymbolImage.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cstring>
#include <xcb/xfixes.h>

namespace pindle {

namespace {

constexpr uint16_t preferredSize = 22; ///< pixels, until the tray decides
constexpr uint32_t requestDock = 0;    ///< SYSTEM_TRAY_REQUEST_DOCK
constexpr uint32_t xembedVersion = 0;
constexpr uint32_t xembedMapped = 1; ///< XEMBED_MAPPED: the tray is to show it
/// WM_SIZE_HINTS (ICCCM 4.1.2.3) with nothing but a least size.
constexpr std::array<uint32_t, 18> sizeHints{1U << 4, 0, 0, 0, 0, preferredSize, preferredSize, 0};
constexpr xcb_button_t leftButton = 1;
constexpr xcb_button_t rightButton = 3;

int screenNumber(const XConnection &connection) {
    auto it = xcb_setup_roots_iterator(xcb_get_setup(connection.xcb()));
    for (int number = 0; it.rem > 0; xcb_screen_next(&it), ++number) {
        if (it.data->root == connection.root())
            return number;
    }
    return 0;
}

} // namespace

EmbeddedIcon::EmbeddedIcon(XConnection &connection, std::function<void(EventType)> clicked)
    : connection_(connection)
    , clicked_(std::move(clicked))
    , self_(std::make_shared<EmbeddedIcon *>(this)) {
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screenNumber(connection_));
    selection_ = connection_.atom(name.constData());
    watchTray();
    connection_.addHandler([self = std::weak_ptr(self_)](const xcb_generic_event_t &event) {
        if (const auto icon = self.lock())
            (*icon)->handle(event);
    });
}

EmbeddedIcon::~EmbeddedIcon() {
    leave();
}

void EmbeddedIcon::watchTray() {
    xcb_connection_t *xcb = connection_.xcb();
    const auto *extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0)
        return;
    selectionEvent_ = static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    // The version has to be agreed upon before any other request.
    xcb_discard_reply(xcb, xcb_xfixes_query_version(xcb, 5, 0).sequence);
    xcb_xfixes_select_selection_input(xcb, connection_.window(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(xcb);
}

void EmbeddedIcon::setSymbol(const QByteArray &svg, const QString &name) {
    svg_ = svg;
    name_ = name.toUtf8();
    if (window_ == XCB_NONE)
        return;
    describeWindow();
    paint();
}

void EmbeddedIcon::setWanted(bool wanted) {
    wanted_ = wanted;
    followTray();
}

void EmbeddedIcon::followTray() {
    xcb_connection_t *xcb = connection_.xcb();
    xcb_window_t tray = XCB_NONE;
    if (wanted_) {
        const auto owner = xcbReply(
            xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection_), nullptr));
        tray = owner ? owner->owner : static_cast<xcb_window_t>(XCB_NONE);
    }
    if (tray == tray_ && (tray == XCB_NONE || window_ != XCB_NONE))
        return;
    leave();
    if (tray != XCB_NONE)
        dock(tray);
}

void EmbeddedIcon::dock(xcb_window_t tray) {
    tray_ = tray;
    makeWindow(visualOf(tray));
    describeWindow();
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = tray;
    message.type = connection_.atom("_NET_SYSTEM_TRAY_OPCODE");
    const std::array<uint32_t, 5> data{XCB_CURRENT_TIME, requestDock, window_, 0, 0};
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection_.xcb(), 0, tray, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(connection_.xcb());
}

/// The visual the tray asks for, else that of the root window.
EmbeddedIcon::Visual EmbeddedIcon::visualOf(xcb_window_t tray) {
    xcb_connection_t *xcb = connection_.xcb();
    const xcb_screen_t &screen = connection_.screen();
    xcb_visualid_t wanted = screen.root_visual;
    const auto asked = xcbReply(xcb_get_property_reply(
        xcb,
        xcb_get_property(xcb, 0, tray, connection_.atom("_NET_SYSTEM_TRAY_VISUAL"),
                         XCB_ATOM_VISUALID, 0, 1),
        nullptr));
    if (asked && xcb_get_property_value_length(asked.get()) == int(sizeof wanted))
        std::memcpy(&wanted, xcb_get_property_value(asked.get()), sizeof wanted);
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0;
         xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0;
             xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == wanted)
                return {wanted, depth.data->depth, depth.data->depth == 32};
        }
    }
    return {screen.root_visual, screen.root_depth, false};
}

void EmbeddedIcon::makeWindow(const Visual &visual) {
    xcb_connection_t *xcb = connection_.xcb();
    visual_ = visual;
    size_ = {preferredSize, preferredSize};
    window_ = xcb_generate_id(xcb);
    const xcb_colormap_t colours = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colours, connection_.root(), visual.id);
    // Where pixels have no transparency of their own, the tray shows through as the background.
    const uint32_t values[] = {visual.hasAlpha ? uint32_t(XCB_BACK_PIXMAP_NONE)
                                               : uint32_t(XCB_BACK_PIXMAP_PARENT_RELATIVE),
                               0,
                               XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                   XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE,
                               colours};
    xcb_create_window(
        xcb, visual.depth, window_, connection_.root(), -1, -1, preferredSize, preferredSize, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    xcb_free_colormap(xcb, colours);
    graphics_ = xcb_generate_id(xcb);
    xcb_create_gc(xcb, graphics_, window_, 0, nullptr);
}

void EmbeddedIcon::describeWindow() {
    xcb_connection_t *xcb = connection_.xcb();
    const auto set = [&](xcb_atom_t property, xcb_atom_t type, uint8_t format, std::size_t count,
                         const void *data) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_, property, type, format,
                            static_cast<uint32_t>(count), data);
    };
    const xcb_atom_t info = connection_.atom("_XEMBED_INFO");
    const std::array<uint32_t, 2> mapped{xembedVersion, xembedMapped};
    set(info, info, 32, mapped.size(), mapped.data());
    constexpr char windowClass[] = "pindle\0Pindle";
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, sizeof windowClass, windowClass);
    const auto nameLength = static_cast<std::size_t>(name_.size());
    set(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, nameLength, name_.constData());
    set(connection_.atom("_NET_WM_NAME"), connection_.atom("UTF8_STRING"), 8, nameLength,
        name_.constData());
    set(XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, sizeHints.size(), sizeHints.data());
}

void EmbeddedIcon::leave() {
    xcb_connection_t *xcb = connection_.xcb();
    if (graphics_ != XCB_NONE)
        xcb_free_gc(xcb, std::exchange(graphics_, XCB_NONE));
    if (window_ != XCB_NONE)
        xcb_destroy_window(xcb, std::exchange(window_, XCB_NONE));
    tray_ = XCB_NONE;
    embedded_ = false;
    pressed_ = 0;
    xcb_flush(xcb);
}

void EmbeddedIcon::handle(const xcb_generic_event_t &event) {
    const auto type = static_cast<uint8_t>(event.response_type & 0x7f);
    if (selectionEvent_ != 0 && type == selectionEvent_) {
        if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event).selection ==
            selection_)
            followTray();
        return;
    }
    if (window_ == XCB_NONE)
        return;
    if (type == XCB_EXPOSE) {
        const auto &expose = reinterpret_cast<const xcb_expose_event_t &>(event);
        if (expose.window == window_ && expose.count == 0)
            paint();
    } else if (type == XCB_CONFIGURE_NOTIFY) {
        resized(reinterpret_cast<const xcb_configure_notify_event_t &>(event));
    } else if (type == XCB_REPARENT_NOTIFY) {
        const auto &reparent = reinterpret_cast<const xcb_reparent_notify_event_t &>(event);
        if (reparent.window == window_)
            embedded_ = reparent.parent != connection_.root();
    } else if (type == XCB_DESTROY_NOTIFY) {
        // The tray has taken it along; another one starts anew.
        if (reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window == window_) {
            window_ = XCB_NONE;
            leave();
        }
    } else if (type == XCB_BUTTON_PRESS) {
        const auto &press = reinterpret_cast<const xcb_button_press_event_t &>(event);
        if (press.event == window_)
            pressed_ = press.detail;
    } else if (type == XCB_BUTTON_RELEASE) {
        released(reinterpret_cast<const xcb_button_release_event_t &>(event));
    }
}

void EmbeddedIcon::released(const xcb_button_release_event_t &event) {
    if (event.event != window_ || event.detail != std::exchange(pressed_, xcb_button_t(0)))
        return;
    if (!QRect(QPoint(), size_).contains(event.event_x, event.event_y))
        return;
    if (event.detail == leftButton)
        clicked_(EventType::leftMouseUp);
    else if (event.detail == rightButton)
        clicked_(EventType::rightMouseUp);
}

void EmbeddedIcon::resized(const xcb_configure_notify_event_t &event) {
    if (event.window != window_ || QSize(event.width, event.height) == size_)
        return;
    size_ = {event.width, event.height};
    paint();
}

std::optional<QRect> EmbeddedIcon::frame() {
    if (window_ == XCB_NONE || !embedded_)
        return std::nullopt;
    xcb_connection_t *xcb = connection_.xcb();
    const auto place = xcbReply(xcb_translate_coordinates_reply(
        xcb, xcb_translate_coordinates(xcb, window_, connection_.root(), 0, 0), nullptr));
    return place ? std::optional(QRect(QPoint(place->dst_x, place->dst_y), size_)) : std::nullopt;
}

void EmbeddedIcon::paint() {
    if (!embedded_ || size_.isEmpty() || svg_.isEmpty() ||
        (visual_.depth != 24 && !visual_.hasAlpha))
        return;
    QImage image = ground();
    if (image.isNull())
        return; // not on the screen; there will be an exposure
    const int side = std::min(size_.width(), size_.height());
    QPainter painter(&image);
    painter.drawImage((size_.width() - side) / 2, (size_.height() - side) / 2,
                      visual_.hasAlpha ? symbolImageForAnyGround(svg_, side)
                                       : symbolImage(svg_, side, symbolColour(image)));
    painter.end();
    xcb_put_image(connection_.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window_, graphics_,
                  static_cast<uint16_t>(image.width()), static_cast<uint16_t>(image.height()), 0, 0,
                  0, visual_.depth, static_cast<uint32_t>(image.sizeInBytes()), image.constBits());
    xcb_flush(connection_.xcb());
}

/// What is below the symbol: the tray's own pixels, or nothing where the icon is translucent.
QImage EmbeddedIcon::ground() {
    if (visual_.hasAlpha) {
        QImage clear(size_, QImage::Format_ARGB32_Premultiplied);
        clear.fill(Qt::transparent);
        return clear;
    }
    xcb_connection_t *xcb = connection_.xcb();
    const auto width = static_cast<uint16_t>(size_.width());
    const auto height = static_cast<uint16_t>(size_.height());
    xcb_clear_area(xcb, 0, window_, 0, 0, 0, 0);
    const auto reply = xcbReply(xcb_get_image_reply(
        xcb, xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, window_, 0, 0, width, height, ~0U),
        nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) != 4 * width * height)
        return {};
    return QImage(xcb_get_image_data(reply.get()), width, height, qsizetype(4) * width,
                  QImage::Format_RGB32)
        .copy();
}

} // namespace pindle
