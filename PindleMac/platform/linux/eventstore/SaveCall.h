#pragma once

#include "PindleMac/platform/linux/eventstore/CalendarBackend.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace pindle {

/// One save, shared by the thread that waits for it and the one that does it.
class SaveCall {
public:
    enum class Step {
        waiting, ///< not begun; if the wait for it ended so, it never will
        running,
        done,
    };

    explicit SaveCall(BackendEvent event)
        : event_(std::move(event)) {}

    /// Waits until it is done, at most so long. A call that has not begun by then is withdrawn.
    Step waitFor(std::chrono::milliseconds limit);
    /// It has begun and not ended.
    bool isUnderWay() const;
    /// What came of it, once it is done.
    BackendSave result() const;

    /// Does it, unless it was withdrawn. Worker thread.
    void run(CalendarBackend *backend);

private:
    const BackendEvent event_;
    mutable std::mutex mutex_;
    std::condition_variable ended_;
    // Guarded by the mutex:
    Step step_ = Step::waiting;
    bool withdrawn_ = false;
    BackendSave result_;
};

} // namespace pindle
