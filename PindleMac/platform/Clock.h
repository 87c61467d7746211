#pragma once

#include <QString>
#include <chrono>
#include <functional>

namespace pindle {

/// A zone of the tz database, by its identifier ("Europe/Berlin").
struct TimeZone {
    QString identifier;
    bool operator==(const TimeZone &) const = default;
};

/// Time as the machine tells it. Called on the main thread.
class Clock {
public:
    /// `cancelled` is true when the wait was given up before its time.
    using SleepCompletion = std::function<void(bool cancelled)>;

    virtual ~Clock() = default;

    /// The current instant, to the second.
    virtual std::chrono::sys_seconds now() = 0;

    /// The user's zone, read afresh at each call.
    virtual TimeZone currentTimeZone() = 0;

    /// Completes on the main thread after at least `duration` of the monotonic clock, without
    /// tolerance.
    virtual void sleep(std::chrono::milliseconds duration, SleepCompletion completion) = 0;
};

} // namespace pindle
