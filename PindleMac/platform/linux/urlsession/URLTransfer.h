#pragma once

#include "PindleMac/platform/linux/urlsession/URLTransfers.h"

#include <QTimer>

namespace pindle {

/// One request on its way, over all redirects, until it is answered, has failed or took too long.
/// Deletes itself.
class URLTransfer final : public QObject {
public:
    URLTransfer(URLTransfers &transfers, const URLRequest &request, URLTransfers::Done done);

    void start();

private:
    void collect();
    void replied();
    /// True when the reply led on, or was not allowed to.
    bool redirected(int status);
    void dropReply();
    void finish(URLResult result);
    void fail(const QString &description);

    URLTransfers &transfers_;
    URLRequest request_;
    URLTransfers::Done done_;
    QTimer deadline_;
    QNetworkReply *reply_ = nullptr;
    QByteArray data_;
    int redirects_ = 0;
};

} // namespace pindle
