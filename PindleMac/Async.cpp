#include "PindleMac/Async.h"

#include <QCoreApplication>

namespace pindle {

namespace {

// `body` lives in this coroutine's frame, and with it all that its lambda captured.
QCoro::Task<void> run(std::function<QCoro::Task<void>()> body) {
    co_await body();
}

} // namespace

void startTask(std::function<QCoro::Task<void>()> body) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [body = std::move(body)] { run(body); },
        Qt::QueuedConnection);
}

} // namespace pindle
