#include "PindleMac/platform/linux/screens/QtScreens.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <vector>

namespace pindle {
namespace {

/// Most windows looked at for reserved space.
constexpr uint32_t mostWindows = 512;
/// Numbers in the longer form of the property.
constexpr uint32_t strutNumbers = 12;

template<class T> QList<T> numbersOf(const XcbReply<xcb_get_property_reply_t> &reply) {
    if (!reply || reply->format != 32)
        return {};
    const auto *numbers = static_cast<const T *>(xcb_get_property_value(reply.get()));
    return {numbers, numbers + xcb_get_property_value_length(reply.get()) / int(sizeof(T))};
}

QRectF mainFrame() {
    const QScreen *main = QGuiApplication::primaryScreen();
    return main != nullptr ? QRectF(main->geometry()) : QRectF();
}

} // namespace

QtScreens::QtScreens(XConnection *connection)
    : connection_(connection) {}

QPointF QtScreens::mouseLocation() {
    return flipped(QPointF(QCursor::pos()), mainFrame());
}

QList<Screen> QtScreens::screens() {
    const auto reserved = struts();
    QList<Screen> all;
    for (const QScreen *screen : QGuiApplication::screens())
        all.append(screenOf(*screen, reserved));
    return all;
}

std::optional<Screen> QtScreens::mainScreen() {
    const QScreen *main = QGuiApplication::primaryScreen();
    if (main == nullptr)
        return std::nullopt;
    return screenOf(*main, struts());
}

Screen QtScreens::screenOf(const QScreen &screen, const std::optional<QList<Strut>> &struts) const {
    const QRectF frame = screen.geometry();
    QRectF visible = screen.availableGeometry();
    if (struts) {
        // The toolkit scales a monitor's size and leaves its corner where it is.
        const QRect pixels(screen.geometry().topLeft(),
                           (QSizeF(frame.size()) * screen.devicePixelRatio()).toSize());
        visible = partInPoints(areaWithoutStruts(pixels, whole_, *struts), pixels, frame);
    }
    return {flipped(frame, mainFrame()), flipped(visible, mainFrame())};
}

std::optional<QList<Strut>> QtScreens::struts() {
    if (connection_ == nullptr)
        return std::nullopt;
    xcb_connection_t *xcb = connection_->xcb();
    const xcb_atom_t partial = connection_->atom("_NET_WM_STRUT_PARTIAL");
    const xcb_atom_t plain = connection_->atom("_NET_WM_STRUT");
    const auto listCookie =
        xcb_get_property(xcb, 0, connection_->root(), connection_->atom("_NET_CLIENT_LIST"),
                         XCB_ATOM_WINDOW, 0, mostWindows);
    // Monitors come and go, and the size the connection began with is that of its first day.
    const auto sizeCookie = xcb_get_geometry(xcb, connection_->root());
    const auto list = xcbReply(xcb_get_property_reply(xcb, listCookie, nullptr));
    const auto size = xcbReply(xcb_get_geometry_reply(xcb, sizeCookie, nullptr));
    if (!list || list->type != XCB_ATOM_WINDOW || !size)
        return std::nullopt;
    whole_ = QSize(size->width, size->height);

    // All questions are asked before the first answer is waited for.
    std::vector<xcb_get_property_cookie_t> cookies;
    for (const xcb_window_t window : numbersOf<xcb_window_t>(list)) {
        for (const xcb_atom_t property : {partial, plain})
            cookies.push_back(
                xcb_get_property(xcb, 0, window, property, XCB_ATOM_CARDINAL, 0, strutNumbers));
    }
    QList<Strut> all;
    for (std::size_t i = 0; i + 1 < cookies.size(); i += 2) {
        const auto longer =
            numbersOf<quint32>(xcbReply(xcb_get_property_reply(xcb, cookies[i], nullptr)));
        const auto shorter =
            numbersOf<quint32>(xcbReply(xcb_get_property_reply(xcb, cookies[i + 1], nullptr)));
        all += strutsOf(longer.isEmpty() ? shorter : longer, whole_);
    }
    return all;
}

} // namespace pindle
