#pragma once

#include "PindleMac/platform/linux/eventstore/CalendarBackend.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace pindle {

/// A calendar store for tests: does what it is told, and what was done to it can be looked at from
/// the test's thread.
class ScriptedStore {
public:
    enum class Hang {
        no,
        interruptible, ///< a call ends when it is interrupted
        deaf,          ///< a call ends with letGo() only
    };

    BackendConnection answer{BackendConnection::State::connected, "cal-1", "Personal", {}};
    /// What saves are answered with; an event is kept unless it is refused.
    BackendSave result{BackendSave::Outcome::saved, {}};
    bool forgetsEvents = false; ///< it keeps none, although it answers as above

    void hang(Hang how) {
        const std::lock_guard lock(mutex_);
        hang_ = how;
    }
    void letGo() {
        const std::lock_guard lock(mutex_);
        hang_ = Hang::no;
        changed_.notify_all();
    }
    int connects() const { return read(connects_); }
    int saves() const { return read(saves_); }
    int interruptions() const { return read(interruptions_); }
    int backends() const { return read(backends_); }
    std::map<std::string, BackendEvent> events() const { return read(events_); }

    /// A way to reach this store, as the worker wants it.
    static std::function<std::unique_ptr<CalendarBackend>()>
    reach(const std::shared_ptr<ScriptedStore> &store);

private:
    friend class ScriptedBackend;
    template<class T> T read(const T &value) const {
        const std::lock_guard lock(mutex_);
        return value;
    }
    /// Until nothing hangs; false when it was interrupted.
    bool wait(std::unique_lock<std::mutex> &lock) {
        changed_.wait(lock, [this] {
            return hang_ == Hang::no || (hang_ == Hang::interruptible && interrupted_);
        });
        return !interrupted_;
    }

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Hang hang_ = Hang::no;
    bool interrupted_ = false;
    int connects_ = 0;
    int saves_ = 0;
    int interruptions_ = 0;
    int backends_ = 0;
    std::map<std::string, BackendEvent> events_;
};

class ScriptedBackend final : public CalendarBackend {
public:
    explicit ScriptedBackend(std::shared_ptr<ScriptedStore> store)
        : store_(std::move(store)) {
        const std::lock_guard lock(store_->mutex_);
        ++store_->backends_;
    }
    BackendConnection connect() override {
        std::unique_lock lock(store_->mutex_);
        ++store_->connects_;
        if (!store_->wait(lock))
            return {BackendConnection::State::failed, {}, {}, "Operation was cancelled"};
        return store_->answer;
    }
    BackendSave save(const BackendEvent &event) override {
        std::unique_lock lock(store_->mutex_);
        ++store_->saves_;
        const bool answered = store_->wait(lock);
        if (store_->result.outcome != BackendSave::Outcome::refused && !store_->forgetsEvents)
            store_->events_[event.uid] = event;
        return answered ? store_->result
                        : BackendSave{BackendSave::Outcome::unknown, "Operation was cancelled"};
    }
    void interrupt() override {
        const std::lock_guard lock(store_->mutex_);
        ++store_->interruptions_;
        store_->interrupted_ = true;
        store_->changed_.notify_all();
    }
    void resume() override {
        const std::lock_guard lock(store_->mutex_);
        store_->interrupted_ = false;
    }

private:
    std::shared_ptr<ScriptedStore> store_;
};

inline std::function<std::unique_ptr<CalendarBackend>()>
ScriptedStore::reach(const std::shared_ptr<ScriptedStore> &store) {
    return [store] { return std::make_unique<ScriptedBackend>(store); };
}

} // namespace pindle
