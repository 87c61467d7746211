#pragma once

#include <atomic>
#include <chrono>
#include <exception>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>
#include <vector>

namespace pindle {

/// The moment by which something must be over.
using Deadline = std::chrono::steady_clock::time_point;

/// One call waits no longer than this for its answer.
inline constexpr std::chrono::milliseconds kBusCallTimeout{150};

/// Thrown when an answer did not come in time.
struct BusSilent : std::exception {};
/// Thrown when the connection is gone.
struct BusLost : std::exception {};

struct BusMessageRelease {
    void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
};
/// A message, or the answer to a call; null for an answer that was an error.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageRelease>;

/// The session bus of the environment, else its usual place (where systemd puts it); empty when
/// neither is known.
std::string sessionBusAddress();

/// A connection to a D-Bus on which every wait has an end. It has no thread and no state besides
/// its own; all of it is used on one thread.
class BusConnection {
public:
    /// Connects to `address`; waits in steps short enough to notice `cancelled`. Null when it did
    /// not succeed by `deadline`.
    static std::unique_ptr<BusConnection> open(const std::string &address, Deadline deadline,
                                               const std::atomic<bool> &cancelled);
    ~BusConnection();
    BusConnection(const BusConnection &) = delete;
    BusConnection &operator=(const BusConnection &) = delete;

    sd_bus *bus() const { return bus_; }
    bool isOpen() const { return sd_bus_is_open(bus_) > 0; }

    /// A call to be filled with arguments and sent. Throws BusLost.
    BusMessage method(const std::string &service, const std::string &path, const char *interface,
                      const char *member);
    /// A call that reads a property.
    BusMessage property(const std::string &service, const std::string &path, const char *interface,
                        const char *name);

    /// Sends all calls at once and gathers the answers in the same order. Throws BusSilent when one
    /// of them takes longer than `timeout` or beyond `deadline`, BusLost when the bus is gone.
    std::vector<BusMessage> exchange(const std::vector<BusMessage> &calls, Deadline deadline,
                                     std::chrono::milliseconds timeout = kBusCallTimeout);
    BusMessage call(BusMessage message, Deadline deadline,
                    std::chrono::milliseconds timeout = kBusCallTimeout);

    /// Handles what has arrived without being asked for. False when the connection is gone.
    bool processArrived();

private:
    BusConnection(sd_bus *bus, const std::atomic<bool> &cancelled);
    void waitUntil(Deadline deadline);

    sd_bus *bus_;
    const std::atomic<bool> &cancelled_;
};

} // namespace pindle
