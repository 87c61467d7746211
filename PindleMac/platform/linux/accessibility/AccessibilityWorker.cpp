#include "PindleMac/platform/linux/accessibility/AccessibilityWorker.h"

#include <csignal>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace pindle {

AccessibilityWorker::AccessibilityWorker(AccessibilityBuses::StatusObserver observer)
    : observer_(std::move(observer))
    , wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

AccessibilityWorker::~AccessibilityWorker() {
    cancelled_ = true;
    if (thread_.joinable()) {
        wake();
        thread_.join();
    }
    close(wakeUp_);
}

void AccessibilityWorker::post(Job job) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    if (thread_.joinable()) {
        wake();
        return;
    }
    // Signals belong to the main thread; a new thread inherits the mask.
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    pthread_setname_np(thread_.native_handle(), "accessibility");
}

void AccessibilityWorker::run() {
    AccessibilityBuses buses(cancelled_, observer_);
    while (!cancelled_) {
        for (const Job &job : takeJobs()) {
            if (!cancelled_)
                job(buses);
        }
        buses.processArrived();
        waitForWork(buses);
    }
}

std::deque<AccessibilityWorker::Job> AccessibilityWorker::takeJobs() {
    const std::lock_guard lock(mutex_);
    return std::exchange(jobs_, {});
}

void AccessibilityWorker::waitForWork(const AccessibilityBuses &buses) const {
    const auto ofBuses = buses.descriptors();
    std::array<pollfd, 3> all{pollfd{wakeUp_, POLLIN, 0}, ofBuses[0], ofBuses[1]};
    poll(all.data(), all.size(), buses.isStatusOutdated() ? 0 : -1);
    uint64_t count = 0;
    if (read(wakeUp_, &count, sizeof count) < 0) {
        // Nothing was posted: a bus has something to say.
    }
}

void AccessibilityWorker::wake() const {
    const uint64_t one = 1;
    if (write(wakeUp_, &one, sizeof one) < 0) {
        // Only a counter about to overflow cannot be written: then it is awake.
    }
}

} // namespace pindle
