#pragma once

#include "PindleMac/platform/linux/accessibility/Atspi.h"

#include <sys/types.h>

namespace pindle {

/// Search gives up beyond this number of objects.
inline constexpr std::size_t kFocusNodeLimit = 400;

/// The object that has the keyboard focus in an application.
struct Focus {
    atspi::Ref element;
    uint32_t role = 0;
    bool hasText = false;
};

/// Finds the focused object of one process on the accessibility bus. Worker thread; throws
/// BusSilent and BusLost.
class FocusFinder {
public:
    FocusFinder(BusConnection &bus, Deadline deadline)
        : bus_(bus)
        , deadline_(deadline) {}

    /// Absent when the process is not on the bus or nothing in it has the focus. No other
    /// application is asked anything, so that a hung one does not matter.
    std::optional<Focus> focusOf(pid_t process);

private:
    using Refs = std::vector<atspi::Ref>;

    Refs applicationsOf(pid_t process);
    Refs activeWindows(const Refs &applications);
    std::optional<Refs> focusedByCollection(const Refs &windows);
    Refs focusedBySearch(Refs level);
    Refs childrenOf(const Refs &parents);
    std::optional<Focus> best(const Refs &focused);
    std::vector<atspi::States> statesOf(const Refs &objects);
    std::vector<BusMessage> askEach(const Refs &objects, const char *member);

    BusConnection &bus_;
    Deadline deadline_;
};

} // namespace pindle
