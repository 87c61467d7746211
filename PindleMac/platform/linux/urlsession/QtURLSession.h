#pragma once

#include "PindleMac/platform/URLSession.h"

#include <QHash>
#include <QObject>
#include <QSslCertificate>
#include <memory>

class QThread;

namespace pindle {

class MainThreadMailbox;
class URLTransfers;

/// Transfers by Qt Network on a thread of their own, which is started with the first request. Only
/// https is spoken. A request is sent once; redirects are followed over https only. The hosts of
/// `LocalHosts` are answered on that thread inside the process, and nothing of theirs goes on the
/// wire.
class QtURLSession final : public URLSession {
public:
    /// Answers a request of one host; runs on the background thread.
    using LocalHost = std::function<URLResult(const URLRequest &)>;
    using LocalHosts = QHash<QString, LocalHost>;

    /// `authorities` are trusted besides the system's, for tests with certificates of their own.
    explicit QtURLSession(LocalHosts hosts = {}, QList<QSslCertificate> authorities = {});
    /// Transfers that run are given up; their completions do not run.
    ~QtURLSession() override;

    void dataTask(const URLRequest &request, Completion completion) override;

private:
    void start();

    LocalHosts hosts_;
    QList<QSslCertificate> authorities_;
    QObject context_; ///< on the main thread; completions stop with it
    std::shared_ptr<MainThreadMailbox> mailbox_;
    QThread *thread_ = nullptr;
    URLTransfers *transfers_ = nullptr; ///< lives on `thread_`
};

} // namespace pindle
