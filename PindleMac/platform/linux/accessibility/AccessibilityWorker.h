#pragma once

#include "PindleMac/platform/linux/accessibility/AccessibilityBuses.h"

#include <deque>
#include <mutex>
#include <thread>

namespace pindle {

/// The one thread that talks to the accessibility bus. Jobs run there one after another; every wait
/// in them has an end, so that a job never holds up the next for longer than its own deadline.
/// The thread starts with the first job and sleeps between them.
class AccessibilityWorker {
public:
    using Job = std::function<void(AccessibilityBuses &)>;

    explicit AccessibilityWorker(AccessibilityBuses::StatusObserver observer);
    /// Drops the jobs that have not started and waits for the one under way.
    ~AccessibilityWorker();

    void post(Job job);

private:
    void run();
    std::deque<Job> takeJobs();
    void waitForWork(const AccessibilityBuses &buses) const;
    void wake() const;

    AccessibilityBuses::StatusObserver observer_;
    int wakeUp_; ///< eventfd
    std::atomic<bool> cancelled_ = false;
    std::mutex mutex_;
    std::deque<Job> jobs_; ///< guarded by the mutex
    std::thread thread_;
};

} // namespace pindle
