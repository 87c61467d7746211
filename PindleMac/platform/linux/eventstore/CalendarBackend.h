#pragma once

#include <cstdint>
#include <string>

namespace pindle {

/// One event to add, in two writings of the same instants (RFC 5545, UTF-8).
struct BackendEvent {
    std::string uid;        ///< the event's UID, in both writings
    std::string zoned;      ///< a VCALENDAR: the event and the VTIMEZONE its times name
    std::string universal;  ///< the same with every time in UTC
    std::int64_t start = 0; ///< seconds since 1970, UTC
    std::int64_t end = 0;
};

/// What became of an attempt to reach the default calendar.
struct BackendConnection {
    enum class State {
        absent,    ///< the store has no calendar at all
        failed,    ///< it has, but the default one cannot be reached; `error` says why
        connected, ///< events can be saved
    };
    State state = State::failed;
    std::string identifier; ///< the default calendar's, unique in the store
    std::string name;       ///< the default calendar's, for people
    std::string error;      ///< the store's own description
};

/// What became of one event.
struct BackendSave {
    enum class Outcome {
        saved,   ///< the event is in the calendar
        refused, ///< it is not
        unknown, ///< the store went away before it answered; the event may be there
    };
    Outcome outcome = Outcome::refused;
    std::string error; ///< the store's own description, unless saved
};

/// A calendar store behind a library that is loaded when it is first needed. One thread makes it,
/// uses it and ends it; calls may take as long as the store does.
class CalendarBackend {
public:
    virtual ~CalendarBackend() = default;

    /// Connects to the default calendar, anew at each call.
    virtual BackendConnection connect() = 0;

    /// Adds the event to the calendar connected to, wholly or not at all. A UID that is already
    /// there counts as saved, so a repeated save with the same UID adds nothing. Zoned times are
    /// written where the store takes the zone for the same instants, else universal ones.
    virtual BackendSave save(const BackendEvent &event) = 0;

    /// Ends the call under way soon and fails those that follow, until resume(). Any thread.
    virtual void interrupt() = 0;
    virtual void resume() = 0;
};

/// What a plugin exports, and under which name: the caller owns what it makes. The number in the
/// name changes with this file.
using MakeCalendarBackend = CalendarBackend *();
inline constexpr char makeCalendarBackendName[] = "pindleMakeCalendarBackend1";

} // namespace pindle
