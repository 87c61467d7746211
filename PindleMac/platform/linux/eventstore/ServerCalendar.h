#pragma once

#include "PindleMac/platform/EventStore.h"
#include "PindleMac/platform/linux/eventstore/CalendarWorker.h"

#include <QTimer>
#include <vector>

namespace pindle {

class IcsEvent;
class SaveCall;

/// The default calendar of a store behind a backend. Main thread; it never waits for the store
/// longer than 250 ms.
class ServerCalendar {
public:
    explicit ServerCalendar(CalendarWorker::MakeBackend make);
    ~ServerCalendar();
    ServerCalendar(const ServerCalendar &) = delete;
    ServerCalendar &operator=(const ServerCalendar &) = delete;

    /// Connects in the background, anew at each call. `done` runs on the main thread within five
    /// seconds, whatever came of it, and not at all once this is destroyed.
    void connect(std::function<void()> done);

    /// There is no such store for this user, or no calendar in it. A store that was connected to
    /// once never becomes absent: its failures are told.
    bool isAbsent() const;
    /// The calendar connected to.
    std::optional<EKCalendar> calendar() const;

    /// Adds the event at once or throws PlatformError with the store's own description. Where no
    /// answer came in time the message says that the event may still appear; the next save of an
    /// event with the same content then has the same UID, so that it is never there twice.
    void save(const IcsEvent &event);

private:
    /// A save whose success is not certain.
    struct Attempt {
        QByteArray content;
        QByteArray uid;
        QString calendarName;
        std::shared_ptr<SaveCall> call;
    };
    void connectionEnded(int number, BackendConnection connection);
    Attempt &attemptFor(const QByteArray &content);
    void start(Attempt &attempt, const IcsEvent &event);
    void finish(const Attempt &attempt);

    std::shared_ptr<ServerCalendar *> self_; ///< what arrives later asks it whether this still is
    BackendConnection connection_;
    bool everConnected_ = false;
    int connecting_ = 0; ///< the job's number, or 0
    QTimer deadline_;
    std::vector<std::function<void()>> waiting_;
    std::vector<Attempt> attempts_; ///< the latest few, the last one at the end
    CalendarWorker worker_;
};

} // namespace pindle
