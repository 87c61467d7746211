#include "PindleMac/platform/linux/urlsession/QtURLSession.h"

#include "PindleMac/platform/linux/urlsession/URLTransfers.h"

#include <QMutex>
#include <QThread>

namespace pindle {

namespace {

constexpr unsigned long endTimeoutMs = 250; ///< for the thread to end with the session

} // namespace

/// The way back to the main thread, which a transfer may outlive when its host inside the process
/// does not come to an end.
class MainThreadMailbox {
public:
    explicit MainThreadMailbox(QObject &recipient)
        : recipient_(&recipient) {}

    void post(std::function<void()> delivery) {
        const QMutexLocker locker(&mutex_);
        if (recipient_)
            QMetaObject::invokeMethod(recipient_, std::move(delivery), Qt::QueuedConnection);
    }

    void close() {
        const QMutexLocker locker(&mutex_);
        recipient_ = nullptr;
    }

private:
    QMutex mutex_;
    QObject *recipient_;
};

QtURLSession::QtURLSession(LocalHosts hosts, QList<QSslCertificate> authorities)
    : hosts_(std::move(hosts))
    , authorities_(std::move(authorities))
    , mailbox_(std::make_shared<MainThreadMailbox>(context_)) {}

QtURLSession::~QtURLSession() {
    mailbox_->close();
    if (!thread_)
        return;
    thread_->quit();
    // A thread that does not end in time is left to the end of the process.
    if (thread_->wait(endTimeoutMs))
        delete thread_;
}

void QtURLSession::start() {
    thread_ = new QThread;
    thread_->setObjectName(QStringLiteral("URLSession"));
    transfers_ = new URLTransfers(hosts_, authorities_);
    transfers_->moveToThread(thread_);
    QObject::connect(thread_, &QThread::finished, transfers_, &QObject::deleteLater);
    thread_->start();
}

void QtURLSession::dataTask(const URLRequest &request, Completion completion) {
    if (!thread_)
        start();
    auto done = [mailbox = mailbox_, completion = std::move(completion)](URLResult result) {
        mailbox->post([completion, result = std::move(result)] { completion(result); });
    };
    QMetaObject::invokeMethod(
        transfers_,
        [transfers = transfers_, request, done = std::move(done)] {
            transfers->start(request, done);
        },
        Qt::QueuedConnection);
}

} // namespace pindle
