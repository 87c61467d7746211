#pragma once

#include "PindleMac/platform/linux/accessibility/BusConnection.h"

#include <array>
#include <functional>
#include <poll.h>

namespace pindle {

/// Starting the accessibility bus, where it does not run yet, may take this long.
inline constexpr std::chrono::milliseconds kBusStartTimeout{1000};

/// The connections to the session bus, which knows where the accessibility bus is and whether it is
/// switched on, and to the accessibility bus. Both are made when first needed and made anew after
/// they were lost. Worker thread.
class AccessibilityBuses {
public:
    /// Called on the worker thread whenever it may have changed: the accessibility bus is reachable
    /// and switched on.
    using StatusObserver = std::function<void(bool isOn)>;

    AccessibilityBuses(const std::atomic<bool> &cancelled, StatusObserver observer);

    /// Connected; null where the bus cannot be reached by `deadline`.
    BusConnection *accessibilityBus(Deadline deadline);

    /// Asks for the state, tells the observer and returns it; starts the bus when needed.
    bool refreshStatus();

    /// Switches the accessibility bus on or off for the session and all later ones
    /// (org.a11y.Status).
    void setSwitchedOn(bool on);

    /// What to wait for besides jobs, and what to do when something came.
    std::array<pollfd, 2> descriptors() const;
    void processArrived();
    /// Whether processArrived() has more to do already.
    bool isStatusOutdated() const { return statusChanged_; }

private:
    BusConnection *sessionBus(Deadline deadline);
    void watchStatus();
    bool readStatus(Deadline deadline);

    const std::atomic<bool> &cancelled_;
    StatusObserver observer_;
    std::unique_ptr<BusConnection> session_;
    std::unique_ptr<BusConnection> accessibility_;
    bool statusChanged_ = false;
};

} // namespace pindle
