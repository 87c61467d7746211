#pragma once

#include "PindleMac/platform/Pasteboard.h"
#include "PindleMac/platform/linux/pasteboard/SelectionOwner.h"
#include "PindleMac/platform/linux/pasteboard/SelectionReader.h"
#include "PindleMac/platform/linux/pasteboard/SelectionWatch.h"

namespace pindle {

class XConnection;

/// The clipboard of X11 is the CLIPBOARD selection. Reading waits for no owner; what is written is
/// in force when the call returns. Main thread.
class X11Pasteboard : public Pasteboard {
public:
    explicit X11Pasteboard(XConnection &connection);

    qint64 changeCount() override;
    void stringForType(TextCompletion completion) override;
    void clearContents() override;
    void setString(const QString &text) override;

private:
    xcb_atom_t clipboard_;
    SelectionWatch watch_;
    SelectionReader reader_;
    SelectionOwner owner_;
};

} // namespace pindle
