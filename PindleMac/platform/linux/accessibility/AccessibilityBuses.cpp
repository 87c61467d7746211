#include "PindleMac/platform/linux/accessibility/AccessibilityBuses.h"

#include "PindleMac/platform/linux/accessibility/Atspi.h"

namespace pindle {

namespace {

constexpr char kService[] = "org.a11y.Bus";
constexpr char kPath[] = "/org/a11y/bus";
constexpr char kStatus[] = "org.a11y.Status";

Deadline after(std::chrono::milliseconds time) {
    return std::chrono::steady_clock::now() + time;
}

int onStatusSignal(sd_bus_message * /*message*/, void *userdata, sd_bus_error * /*error*/) {
    *static_cast<bool *>(userdata) = true;
    return 0;
}

} // namespace

AccessibilityBuses::AccessibilityBuses(const std::atomic<bool> &cancelled, StatusObserver observer)
    : cancelled_(cancelled)
    , observer_(std::move(observer)) {}

BusConnection *AccessibilityBuses::sessionBus(Deadline deadline) {
    if (!session_ || !session_->isOpen()) {
        session_.reset();
        if (const std::string address = sessionBusAddress(); !address.empty())
            session_ = BusConnection::open(address, deadline, cancelled_);
        if (session_)
            watchStatus();
    }
    return session_.get();
}

void AccessibilityBuses::watchStatus() {
    for (const char *rule :
         {"type='signal',sender='org.a11y.Bus',path='/org/a11y/bus',"
          "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged'",
          "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
          "member='NameOwnerChanged',arg0='org.a11y.Bus'"})
        sd_bus_add_match_async(session_->bus(), nullptr, rule, onStatusSignal, nullptr,
                               &statusChanged_);
}

BusConnection *AccessibilityBuses::accessibilityBus(Deadline deadline) {
    if (accessibility_ && accessibility_->processArrived() && accessibility_->isOpen())
        return accessibility_.get();
    accessibility_.reset();
    BusConnection *session = sessionBus(deadline);
    if (!session)
        return nullptr;
    try {
        const auto answer = session->call(session->method(kService, kPath, kService, "GetAddress"),
                                          deadline, kBusStartTimeout);
        if (const auto address = atspi::text(answer); address && !address->isEmpty())
            accessibility_ = BusConnection::open(address->toStdString(), deadline, cancelled_);
    } catch (const std::exception &) {
        // Not reachable in time; the next request tries again.
    }
    return accessibility_.get();
}

bool AccessibilityBuses::refreshStatus() {
    const Deadline deadline = after(kBusStartTimeout);
    bool isOn = false;
    statusChanged_ = false; // a change from here on needs another look
    try {
        isOn = accessibilityBus(deadline) && readStatus(deadline);
    } catch (const std::exception &) {
        // Out of reach is off.
    }
    observer_(isOn);
    return isOn;
}

bool AccessibilityBuses::readStatus(Deadline deadline) {
    BusConnection *session = sessionBus(deadline);
    return session && atspi::boolProperty(
                          session->call(session->property(kService, kPath, kStatus, "IsEnabled"),
                                        deadline, kBusStartTimeout))
                          .value_or(false);
}

void AccessibilityBuses::setSwitchedOn(bool on) {
    const Deadline deadline = after(kBusStartTimeout);
    try {
        if (BusConnection *session = sessionBus(deadline)) {
            auto call = session->method(kService, kPath, "org.freedesktop.DBus.Properties", "Set");
            sd_bus_message_append(call.get(), "ssv", kStatus, "IsEnabled", "b", on ? 1 : 0);
            session->call(std::move(call), deadline, kBusStartTimeout);
        }
    } catch (const std::exception &) {
        // What came of it shows in the status.
    }
    refreshStatus();
}

std::array<pollfd, 2> AccessibilityBuses::descriptors() const {
    const auto of = [](const std::unique_ptr<BusConnection> &connection) {
        return pollfd{connection ? sd_bus_get_fd(connection->bus()) : -1, POLLIN, 0};
    };
    return {of(session_), of(accessibility_)};
}

/// A lost bus shows as a changed status.
void AccessibilityBuses::processArrived() {
    for (auto *connection : {&session_, &accessibility_}) {
        if (!*connection || ((*connection)->processArrived() && (*connection)->isOpen()))
            continue;
        connection->reset();
        statusChanged_ = true;
    }
    if (statusChanged_)
        refreshStatus();
}

} // namespace pindle
