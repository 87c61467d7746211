#include "PindleMac/platform/linux/statusbar/LinuxStatusBar.h"

#include "PindleMac/platform/linux/screens/ScreenGeometry.h"
#include "PindleMac/platform/linux/statusbar/EmbeddedIcon.h"
#include "PindleMac/platform/linux/statusbar/NotifierItem.h"
#include "PindleMac/platform/linux/statusbar/PopUpMenu.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace pindle {

namespace {

/// A rectangle of the X screen's pixels in the toolkit's coordinates: a monitor's corner stays
/// where it is, distances from it are scaled.
QRectF toolkitRect(QRect pixels) {
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRectF frame = screen->geometry();
        const QRect monitor(screen->geometry().topLeft(),
                            (frame.size() * screen->devicePixelRatio()).toSize());
        if (monitor.contains(pixels.center()))
            return partInPoints(pixels, monitor, frame);
    }
    return pixels;
}

class LinuxStatusItem final : public StatusItem {
public:
    LinuxStatusItem(XConnection &connection, SessionBus *bus, const SymbolSource &symbols)
        : symbols_(symbols)
        , embedded_(connection, [this](EventType type) { send(type); }) {
        if (bus)
            notifier_ = std::make_unique<NotifierItem>(*bus, callbacks());
    }

    void setImage(const QString &symbolName, const QString &accessibilityDescription) override {
        const QByteArray svg = symbols_(symbolName);
        embedded_.setSymbol(svg, accessibilityDescription);
        if (notifier_)
            notifier_->setSymbol(svg, accessibilityDescription);
        embedded_.setWanted(!notifier_ || !notifier_->isHosted());
    }
    /// No place for icons here shows a title beside one.
    void setImagePosition(ImagePosition) override {}
    void sendActionOn(EventTypeMask mask) override { mask_ = mask; }
    void setAction(Action action) override { action_ = std::move(action); }

    void announceMenu(const Menu &menu) override {
        if (notifier_)
            notifier_->menu().setMenu(menu);
    }
    void popUpMenu(const Menu &menu) override {
        announceMenu(menu);
        if (!hostDrawsMenu_)
            pindle::popUpMenu(menu, place());
    }

    std::optional<QRectF> frame() override {
        const auto pixels = embedded_.frame();
        const QScreen *main = QGuiApplication::primaryScreen();
        if (!pixels || !main)
            return std::nullopt;
        return flipped(toolkitRect(*pixels), main->geometry());
    }

private:
    NotifierItem::Callbacks callbacks() {
        return {[this](EventType type) { send(type); },
                [this] {
                    hostDrawsMenu_ = true;
                    send(EventType::rightMouseUp);
                    hostDrawsMenu_ = false;
                },
                [this](bool hosted) { embedded_.setWanted(!hosted); }};
    }
    void send(EventType type) {
        if (action_ && (mask_ & maskOf(type)) != 0)
            action_(type);
    }
    /// The item's rectangle, or the pointer, which has just clicked it.
    QRect place() {
        const auto pixels = embedded_.frame();
        return pixels ? toolkitRect(*pixels).toRect() : QRect(QCursor::pos(), QSize(1, 1));
    }

    const SymbolSource &symbols_;
    EventTypeMask mask_ = 0;
    Action action_;
    bool hostDrawsMenu_ = false;
    EmbeddedIcon embedded_;
    std::unique_ptr<NotifierItem> notifier_;
};

} // namespace

LinuxStatusBar::LinuxStatusBar(XConnection &connection, SessionBus *bus, SymbolSource symbols)
    : connection_(connection)
    , bus_(bus)
    , symbols_(std::move(symbols)) {}

std::unique_ptr<StatusItem> LinuxStatusBar::statusItem(double) {
    return std::make_unique<LinuxStatusItem>(connection_, bus_, symbols_);
}

} // namespace pindle
