#include "PindleMac/platform/linux/accessibility/FocusFinder.h"

#include <algorithm>

namespace pindle {

using namespace atspi;

namespace {

constexpr int32_t kMatchAll = 1;
constexpr uint32_t kOrderCanonical = 1;

/// Arguments of Collection.GetMatches for everything that has the focus below an object.
void appendFocusedRule(const BusMessage &message) {
    // States and roles are bit sets in words of 32 bits; empty sets match everything.
    sd_bus_message_append(message.get(), "(aiia{ss}iaiiasib)uib", 2, int32_t{1} << kFocused, 0,
                          kMatchAll, 0, kMatchAll, 4, 0, 0, 0, 0, kMatchAll, 0, kMatchAll, 0,
                          kOrderCanonical, 0, 1);
}

} // namespace

std::optional<Focus> FocusFinder::focusOf(pid_t process) {
    const Refs windows = activeWindows(applicationsOf(process));
    if (windows.empty())
        return std::nullopt;
    const auto matches = focusedByCollection(windows);
    return best(matches ? *matches : focusedBySearch(windows));
}

FocusFinder::Refs FocusFinder::applicationsOf(pid_t process) {
    const Refs all = references(bus_.call(
        bus_.method("org.a11y.atspi.Registry", kRoot, kAccessible, "GetChildren"), deadline_));
    std::vector<BusMessage> calls;
    for (const Ref &application : all) {
        calls.push_back(bus_.method("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                    "org.freedesktop.DBus", "GetConnectionUnixProcessID"));
        sd_bus_message_append(calls.back().get(), "s", application.service.c_str());
    }
    const auto answers = bus_.exchange(calls, deadline_);
    Refs found;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (unsignedNumber(answers[i]) == static_cast<uint32_t>(process))
            found.push_back(all[i]);
    }
    return found;
}

/// One process may be several applications, of which only one has the active window.
FocusFinder::Refs FocusFinder::activeWindows(const Refs &applications) {
    const Refs windows = childrenOf(applications);
    const auto windowStates = statesOf(windows);
    Refs active;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (has(windowStates[i], kActive))
            active.push_back(windows[i]);
    }
    return active;
}

/// Absent where the application does not know the interface.
std::optional<FocusFinder::Refs> FocusFinder::focusedByCollection(const Refs &windows) {
    std::vector<BusMessage> calls;
    for (const Ref &window : windows) {
        calls.push_back(bus_.method(window.service, window.path, kCollection, "GetMatches"));
        appendFocusedRule(calls.back());
    }
    const auto answers = bus_.exchange(calls, deadline_);
    Refs matches;
    for (const BusMessage &answer : answers) {
        if (!answer)
            return std::nullopt;
        const Refs list = references(answer);
        matches.insert(matches.end(), list.begin(), list.end());
    }
    return matches;
}

/// All that has the focus, level by level: the deepest come last.
FocusFinder::Refs FocusFinder::focusedBySearch(Refs level) {
    Refs focused;
    for (std::size_t visited = 0; !level.empty() && visited < kFocusNodeLimit;) {
        level.resize(std::min(level.size(), kFocusNodeLimit - visited));
        visited += level.size();
        const auto levelStates = statesOf(level);
        Refs parents;
        for (std::size_t i = 0; i < level.size(); ++i) {
            if (has(levelStates[i], kFocused))
                focused.push_back(level[i]);
            // What is not shown has no focus, and tables may have any number of cells.
            if (has(levelStates[i], kShowing) && !has(levelStates[i], kManagesDescendants))
                parents.push_back(level[i]);
        }
        level = childrenOf(parents);
    }
    return focused;
}

FocusFinder::Refs FocusFinder::childrenOf(const Refs &parents) {
    Refs children;
    for (const BusMessage &answer : askEach(parents, "GetChildren")) {
        const Refs list = references(answer);
        children.insert(children.end(), list.begin(), list.end());
    }
    return children;
}

/// Toolkits mark frames and viewports around the text as focused too: the last one with text is
/// meant.
std::optional<Focus> FocusFinder::best(const Refs &focused) {
    const auto roles = askEach(focused, "GetRole");
    const auto interfaces = askEach(focused, "GetInterfaces");
    std::optional<Focus> best;
    for (std::size_t i = 0; i < focused.size(); ++i) {
        const auto names = strings(interfaces[i]);
        const bool hasText = std::find(names.begin(), names.end(), kText) != names.end();
        const Focus focus{focused[i], unsignedNumber(roles[i]).value_or(0), hasText};
        if (focus.role == kRolePasswordText)
            return focus;
        if (hasText || !best || !best->hasText)
            best = focus;
    }
    return best;
}

std::vector<States> FocusFinder::statesOf(const Refs &objects) {
    std::vector<States> list;
    for (const BusMessage &answer : askEach(objects, "GetState"))
        list.push_back(states(answer));
    return list;
}

std::vector<BusMessage> FocusFinder::askEach(const Refs &objects, const char *member) {
    std::vector<BusMessage> calls;
    for (const Ref &object : objects)
        calls.push_back(bus_.method(object.service, object.path, kAccessible, member));
    return bus_.exchange(calls, deadline_);
}

} // namespace pindle
