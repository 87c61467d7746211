#include "PindleMac/platform/linux/urlsession/URLTransfer.h"

#include <QNetworkRequest>

namespace pindle {

namespace {

constexpr qsizetype replyLimit = qsizetype{256} << 10; ///< bytes of a body
constexpr qint64 readAhead = qint64{64} << 10; ///< bytes taken from the wire before they are read
constexpr int mostRedirects = 5;

/// The reply is what the server said, and no failure of the transport: Qt reports a status from 400
/// on as an error of its own.
bool isServersWord(const QNetworkReply &reply, int status) {
    const auto error = reply.error();
    return error == QNetworkReply::NoError ||
           (status >= 400 && error >= QNetworkReply::ContentAccessDenied &&
            error != QNetworkReply::ContentReSendError &&
            error != QNetworkReply::ProtocolUnknownError &&
            error != QNetworkReply::ProtocolFailure);
}

bool isRedirect(int status) {
    return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

} // namespace

URLTransfer::URLTransfer(URLTransfers &transfers, const URLRequest &request,
                         URLTransfers::Done done)
    : QObject(&transfers)
    , transfers_(transfers)
    , request_(request)
    , done_(std::move(done)) {
    deadline_.setSingleShot(true);
    deadline_.setTimerType(Qt::PreciseTimer);
    connect(&deadline_, &QTimer::timeout, this,
            [this] { fail(transportErrorText(QNetworkReply::TimeoutError)); });
    deadline_.start(request.timeoutInterval);
}

void URLTransfer::start() {
    if (const auto *host = transfers_.localHost(request_.url)) {
        finish((*host)(request_));
        return;
    }
    data_.clear();
    reply_ = transfers_.send(request_);
    reply_->setReadBufferSize(readAhead);
    connect(reply_, &QNetworkReply::readyRead, this, &URLTransfer::collect);
    connect(reply_, &QNetworkReply::finished, this, &URLTransfer::replied);
}

void URLTransfer::collect() {
    data_ += reply_->readAll();
    if (data_.size() > replyLimit)
        fail(QStringLiteral("The server's reply is too large."));
}

void URLTransfer::replied() {
    collect();
    if (!done_)
        return;
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!isServersWord(*reply_, status)) {
        fail(transportErrorText(reply_->error()));
        return;
    }
    if (redirected(status))
        return;
    URLResult result;
    result.response = {true, status};
    result.data = data_;
    finish(std::move(result));
}

bool URLTransfer::redirected(int status) {
    const QByteArray location = reply_->rawHeader(QByteArrayLiteral("Location"));
    if (!isRedirect(status) || location.isEmpty())
        return false;
    QUrl target = request_.url.resolved(QUrl::fromEncoded(location));
    target.setUserInfo(QString());
    if (target.scheme() != QStringLiteral("https") || target.host().isEmpty()) {
        fail(QStringLiteral("The server redirected to an address that is not secure."));
        return true;
    }
    if (++redirects_ > mostRedirects) {
        fail(QStringLiteral("There were too many redirects."));
        return true;
    }
    request_.url = target;
    // 307 and 308 ask for the same request again; the older ones have come to mean a GET.
    if (status != 307 && status != 308) {
        request_.httpMethod = QByteArrayLiteral("GET");
        request_.httpBody.clear();
        request_.headers.clear();
    }
    dropReply();
    start();
    return true;
}

void URLTransfer::finish(URLResult result) {
    const auto done = std::exchange(done_, nullptr);
    if (!done)
        return;
    deadline_.stop();
    dropReply();
    deleteLater();
    done(std::move(result));
}

void URLTransfer::dropReply() {
    if (!reply_)
        return;
    reply_->disconnect(this);
    reply_->abort();
    reply_->manager()->deleteLater();
    reply_ = nullptr;
}

void URLTransfer::fail(const QString &description) {
    URLResult result;
    result.error = PlatformError(description);
    finish(std::move(result));
}

} // namespace pindle
