#include "PindleMac/platform/linux/eventstore/SaveCall.h"

namespace pindle {

SaveCall::Step SaveCall::waitFor(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    ended_.wait_for(lock, limit, [this] { return step_ == Step::done; });
    withdrawn_ = step_ == Step::waiting;
    return step_;
}

bool SaveCall::isUnderWay() const {
    const std::lock_guard lock(mutex_);
    return step_ == Step::running;
}

BackendSave SaveCall::result() const {
    const std::lock_guard lock(mutex_);
    return result_;
}

void SaveCall::run(CalendarBackend *backend) {
    {
        const std::lock_guard lock(mutex_);
        if (withdrawn_)
            return;
        step_ = Step::running;
    }
    BackendSave result{BackendSave::Outcome::refused, {}};
    if (backend)
        result = backend->save(event_);
    const std::lock_guard lock(mutex_);
    result_ = std::move(result);
    step_ = Step::done;
    ended_.notify_all();
}

} // namespace pindle
