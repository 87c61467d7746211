#pragma once

#include <QCoroTask>
#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace pindle {

/// A wait was given up before its time.
class CancellationError final : public std::exception {
public:
    const char *what() const noexcept override { return "The operation was cancelled."; }
};

/// Starts an asynchronous task on the main thread: none of `body` runs in the caller's stack frame.
/// An error that leaves `body` is a programming error and is dropped.
void startTask(std::function<QCoro::Task<void>()> body);

/// What `co_await awaitCompletion<T>(...)` waits on.
template<class T> class CompletionAwaiter {
public:
    struct State {
        std::optional<T> value;
        std::coroutine_handle<> waiter;
    };

    explicit CompletionAwaiter(std::shared_ptr<State> state)
        : state_(std::move(state)) {}
    bool await_ready() const noexcept { return state_->value.has_value(); }
    void await_suspend(std::coroutine_handle<> waiter) noexcept { state_->waiter = waiter; }
    T await_resume() { return std::move(*state_->value); }

private:
    std::shared_ptr<State> state_;
};

/// Turns a platform operation with a completion into something to await. `start` is called at once
/// with the completion, which is to be called exactly once, on the main thread.
template<class T, class Start> CompletionAwaiter<T> awaitCompletion(Start &&start) {
    auto state = std::make_shared<typename CompletionAwaiter<T>::State>();
    std::forward<Start>(start)([state](T value) {
        state->value = std::move(value);
        if (auto waiter = std::exchange(state->waiter, {}))
            waiter.resume();
    });
    return CompletionAwaiter<T>(state);
}

} // namespace pindle
