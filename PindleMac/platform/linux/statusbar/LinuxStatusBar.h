#pragma once

#include "PindleMac/platform/StatusBar.h"

#include <QByteArray>

namespace pindle {

class SessionBus;
class XConnection;

/// The drawing of a system symbol as an SVG document; empty when there is none of that name.
using SymbolSource = std::function<QByteArray(const QString &name)>;

/// Status items of whichever kind the desktop has a place for: told over the session bus where a
/// panel takes them there, else as a window in a system tray.
class LinuxStatusBar final : public StatusBar {
public:
    /// `bus` is null where there is none. Both must outlive it.
    LinuxStatusBar(XConnection &connection, SessionBus *bus, SymbolSource symbols);

    std::unique_ptr<StatusItem> statusItem(double length) override;

private:
    XConnection &connection_;
    SessionBus *bus_;
    SymbolSource symbols_;
};

} // namespace pindle
