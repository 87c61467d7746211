#pragma once

#include <QObject>
#include <functional>

namespace pindle {

/// Runs an action on the next turn of the event loop, once however often it was asked for before.
class OncePerTurn : public QObject {
public:
    explicit OncePerTurn(std::function<void()> action)
        : action_(std::move(action)) {}

    void request() {
        if (requested_)
            return;
        requested_ = true;
        QMetaObject::invokeMethod(
            this, [this] { runNow(); }, Qt::QueuedConnection);
    }

    /// Runs the action at once if it is still due.
    void runNow() {
        if (!requested_)
            return;
        requested_ = false;
        action_();
    }

private:
    std::function<void()> action_;
    bool requested_ = false;
};

} // namespace pindle
