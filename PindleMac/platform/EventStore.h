#pragma once

#include "PindleMac/platform/Clock.h"
#include "PindleMac/platform/PlatformError.h"

#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace pindle {

/// Authorization for events, with EventKit's values; a store may give out others.
enum class EKAuthorizationStatus : int {
    notDetermined = 0,
    restricted = 1,
    denied = 2,
    fullAccess = 3,
    writeOnly = 4,
};

enum class EKSpan { thisEvent = 0 };

/// A calendar of the store.
struct EKCalendar {
    QString identifier;
    bool operator==(const EKCalendar &) const = default;
};

/// A new event, nowhere stored until its store saves it.
class EKEvent {
public:
    virtual ~EKEvent() = default;
    virtual void setCalendar(const std::optional<EKCalendar> &calendar) = 0;
    virtual void setTitle(const QString &title) = 0;
    virtual void setLocation(const QString &location) = 0;
    virtual void setNotes(const QString &notes) = 0;
    virtual void setStartDate(std::chrono::sys_seconds start) = 0;
    virtual void setEndDate(std::chrono::sys_seconds end) = 0;
    /// The zone its wall-clock times are written in; the instants stay as they are.
    virtual void setTimeZone(const TimeZone &zone) = 0;
};

/// The user's calendars, for adding only. Called on the main thread.
class EventStore {
public:
    using AccessCompletion = std::function<void(bool granted, std::optional<PlatformError> error)>;

    virtual ~EventStore() = default;

    /// Asks the user the first time, later answers from memory. The completion runs on the main
    /// thread. A question closed without an answer is not granted and will be asked again.
    virtual void requestWriteOnlyAccessToEvents(AccessCompletion completion) = 0;

    /// The stored decision; never asks.
    virtual EKAuthorizationStatus authorizationStatus() = 0;

    virtual std::unique_ptr<EKEvent> makeEvent() = 0;

    /// Where new events go; absent when the user has no calendar to write to.
    virtual std::optional<EKCalendar> defaultCalendarForNewEvents() = 0;

    /// Saves and commits at once, wholly or not at all. `event` comes from makeEvent() of this
    /// store. Throws PlatformError with the store's own description.
    virtual void save(EKEvent &event, EKSpan span) = 0;
};

} // namespace pindle
