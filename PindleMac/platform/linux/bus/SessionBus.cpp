#include "PindleMac/platform/linux/bus/SessionBus.h"

#include <QSocketNotifier>
#include <poll.h>

namespace pindle {

namespace {

/// Longest wait for the bus at start-up.
constexpr std::chrono::milliseconds openTimeout{250};

} // namespace

std::unique_ptr<SessionBus> SessionBus::open() {
    const std::string address = sessionBusAddress();
    if (address.empty())
        return nullptr;
    std::unique_ptr<SessionBus> bus(new SessionBus);
    bus->connection_ = BusConnection::open(address, std::chrono::steady_clock::now() + openTimeout,
                                           bus->cancelled_);
    return bus->connection_ ? std::move(bus) : nullptr;
}

SessionBus::~SessionBus() {
    // The notifiers end before the descriptor they watch.
    delete readable_;
    delete writable_;
}

void SessionBus::attach() {
    const int descriptor = sd_bus_get_fd(bus());
    readable_ = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    writable_ = new QSocketNotifier(descriptor, QSocketNotifier::Write, this);
    writable_->setEnabled(false);
    connect(readable_, &QSocketNotifier::activated, this, &SessionBus::process);
    connect(writable_, &QSocketNotifier::activated, this, &SessionBus::process);
    // What came before is in the connection's queue, of which the descriptor says nothing.
    QMetaObject::invokeMethod(this, &SessionBus::process, Qt::QueuedConnection);
}

void SessionBus::process() {
    if (connection_->processArrived() && connection_->isOpen())
        return flush();
    readable_->setEnabled(false);
    writable_->setEnabled(false);
}

void SessionBus::flush() {
    // No call on this connection has a time-out, so its descriptor is all there is to wait for.
    if (writable_ && connection_->isOpen())
        writable_->setEnabled((sd_bus_get_events(bus()) & POLLOUT) != 0);
}

} // namespace pindle
