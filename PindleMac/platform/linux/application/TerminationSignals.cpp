#include "PindleMac/platform/linux/application/TerminationSignals.h"

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace pindle {

namespace {

constexpr std::array ending = {SIGTERM, SIGINT, SIGHUP};

int arrivals = -1; ///< eventfd; all that a signal handler may safely touch

void onSignal(int) {
    const int saved = errno;
    const uint64_t one = 1;
    if (write(arrivals, &one, sizeof one) < 0) {
        // The counter is full: the loop has been told.
    }
    errno = saved;
}

void setAction(int signal, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> arrived) {
    arrivals = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(arrivals, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [arrived = std::move(arrived)] {
                         uint64_t count = 0;
                         if (read(arrivals, &count, sizeof count) > 0)
                             arrived();
                     });
    for (const int signal : ending) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        // nohup and its like mean it.
        if (present.sa_handler != SIG_IGN)
            setAction(signal, onSignal);
    }
}

TerminationSignals::~TerminationSignals() {
    for (const int signal : ending) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler == onSignal)
            setAction(signal, SIG_DFL);
    }
    notifier_.reset();
    close(std::exchange(arrivals, -1));
}

} // namespace pindle
