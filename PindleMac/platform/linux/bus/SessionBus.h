#pragma once

#include "PindleMac/platform/linux/accessibility/BusConnection.h"

#include <QObject>

class QSocketNotifier;

namespace pindle {

struct BusSlotRelease {
    void operator()(sd_bus_slot *slot) const { sd_bus_slot_unref(slot); }
};
/// A registration with a bus; what it calls is no longer called once it is released.
using BusSlot = std::unique_ptr<sd_bus_slot, BusSlotRelease>;

/// The main thread's connection to the session bus. Messages are delivered from the event loop;
/// nothing is polled. Where the bus goes away, the program lives on without it. Main thread.
class SessionBus : public QObject {
public:
    /// Connects; null where there is no session bus or it does not answer within a quarter of a
    /// second. Needs no application object.
    static std::unique_ptr<SessionBus> open();
    ~SessionBus() override;

    sd_bus *bus() const { return connection_->bus(); }
    BusConnection &connection() const { return *connection_; }

    /// From here on the event loop delivers what arrives; to be called once it can run.
    void attach();
    /// Sees to it that what could not be sent at once is sent; to be called after sending outside
    /// of a bus callback.
    void flush();

private:
    SessionBus() = default;
    void process();

    std::atomic<bool> cancelled_ = false;
    std::unique_ptr<BusConnection> connection_;
    QSocketNotifier *readable_ = nullptr;
    QSocketNotifier *writable_ = nullptr;
};

} // namespace pindle
