#include "PindleMac/platform/linux/pasteboard/X11Pasteboard.h"

#include "PindleMac/platform/linux/x11/XConnection.h"

namespace pindle {

X11Pasteboard::X11Pasteboard(XConnection &connection)
    : clipboard_(connection.atom("CLIPBOARD"))
    , watch_("CLIPBOARD")
    , reader_(connection)
    , owner_(connection, clipboard_) {}

qint64 X11Pasteboard::changeCount() {
    return watch_.changeCount();
}

void X11Pasteboard::stringForType(TextCompletion completion) {
    reader_.read(clipboard_, kSelectionSilence, std::move(completion));
}

void X11Pasteboard::clearContents() {
    owner_.clear(watch_.serverTime());
}

void X11Pasteboard::setString(const QString &text) {
    owner_.own(text, watch_.serverTime());
}

} // namespace pindle
