#include "PindleMac/platform/linux/eventstore/CalendarWorker.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <utility>

namespace pindle {

namespace {
/// How long the end of the program waits for an interrupted call.
constexpr std::chrono::milliseconds endLimit{250};
} // namespace

struct CalendarWorker::Shared {
    MakeBackend make; ///< the worker's alone

    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by the mutex:
    std::deque<std::pair<int, Job>> jobs;
    CalendarBackend *backend = nullptr;
    int lastNumber = 0;
    int underWay = 0;     ///< number of a job, or 0
    bool givenUp = false; ///< the job under way
    bool stopped = false;
    bool ended = false;

    /// The next job; an empty one at the end.
    Job take() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return stopped || !jobs.empty(); });
        if (stopped)
            return {};
        underWay = jobs.front().first;
        Job job = std::move(jobs.front().second);
        jobs.pop_front();
        return job;
    }
    void setBackend(CalendarBackend *made) {
        const std::lock_guard lock(mutex);
        backend = made;
        if (made && (stopped || givenUp))
            made->interrupt();
    }
    void jobEnded() {
        const std::lock_guard lock(mutex);
        underWay = 0;
        if (std::exchange(givenUp, false) && backend && !stopped)
            backend->resume();
    }
};

CalendarWorker::CalendarWorker(MakeBackend make)
    : shared_(std::make_shared<Shared>()) {
    shared_->make = std::move(make);
}

CalendarWorker::~CalendarWorker() {
    if (!thread_.joinable())
        return;
    std::unique_lock lock(shared_->mutex);
    shared_->stopped = true;
    shared_->jobs.clear();
    if (shared_->backend)
        shared_->backend->interrupt();
    shared_->changed.notify_all();
    const bool ended = shared_->changed.wait_for(lock, endLimit, [this] { return shared_->ended; });
    lock.unlock();
    if (ended)
        thread_.join();
    else
        thread_.detach();
}

int CalendarWorker::post(Job job) {
    int number = 0;
    {
        const std::lock_guard lock(shared_->mutex);
        number = ++shared_->lastNumber;
        shared_->jobs.emplace_back(number, std::move(job));
    }
    shared_->changed.notify_all();
    if (thread_.joinable())
        return number;
    // Signals belong to the main thread; a new thread inherits the mask.
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    thread_ = std::thread([shared = shared_] { run(shared); });
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    pthread_setname_np(thread_.native_handle(), "calendar");
    return number;
}

void CalendarWorker::giveUp(int number) {
    const std::lock_guard lock(shared_->mutex);
    std::erase_if(shared_->jobs, [number](const auto &job) { return job.first == number; });
    if (shared_->underWay != number || shared_->givenUp)
        return;
    shared_->givenUp = true;
    if (shared_->backend)
        shared_->backend->interrupt();
}

void CalendarWorker::run(const std::shared_ptr<Shared> &shared) {
    std::unique_ptr<CalendarBackend> backend;
    while (const Job job = shared->take()) {
        if (!backend) {
            backend = shared->make();
            shared->setBackend(backend.get());
        }
        job(backend.get());
        shared->jobEnded();
    }
    shared->setBackend(nullptr);
    backend.reset();
    const std::lock_guard lock(shared->mutex);
    shared->ended = true;
    shared->changed.notify_all();
}

} // namespace pindle
