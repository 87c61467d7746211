#pragma once

#include "PindleMac/platform/linux/eventstore/CalendarBackend.h"

#include <functional>
#include <memory>
#include <thread>

namespace pindle {

/// The one thread that talks to a calendar backend; jobs run there one after another. It starts
/// with the first job. Used on the main thread.
class CalendarWorker {
public:
    using MakeBackend = std::function<std::unique_ptr<CalendarBackend>()>;
    /// The backend is null where there is none for this user.
    using Job = std::function<void(CalendarBackend *backend)>;

    /// `make` looks for a backend on the worker's thread, again at each job until there is one.
    explicit CalendarWorker(MakeBackend make);
    /// Drops the jobs that have not started and interrupts the one under way. A store that does not
    /// even notice that is left behind.
    ~CalendarWorker();
    CalendarWorker(const CalendarWorker &) = delete;
    CalendarWorker &operator=(const CalendarWorker &) = delete;

    /// A number for giveUp(), never 0.
    int post(Job job);
    /// Drops the job, or interrupts it when it is under way.
    void giveUp(int number);

private:
    struct Shared;
    static void run(const std::shared_ptr<Shared> &shared);

    std::shared_ptr<Shared> shared_;
    std::thread thread_;
};

} // namespace pindle
