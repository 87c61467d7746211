#pragma once

#include <QtGlobal>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace pindle {

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop. A second signal ends the
/// process at once, should the loop have come to a halt. One per process, on the main thread.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> arrived);
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace pindle
