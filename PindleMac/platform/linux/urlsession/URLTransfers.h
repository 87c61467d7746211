#pragma once

#include "PindleMac/platform/URLSession.h"

#include <QHash>
#include <QNetworkReply>
#include <QObject>
#include <QSslCertificate>

namespace pindle {

/// What runs the transfers, on one background thread. The network is touched with the first
/// transfer that needs it.
class URLTransfers final : public QObject {
public:
    using Done = std::function<void(URLResult)>;
    using LocalHost = std::function<URLResult(const URLRequest &)>;

    URLTransfers(const QHash<QString, LocalHost> &hosts, QList<QSslCertificate> authorities);
    ~URLTransfers() override;

    /// Calls `done` once, on this object's thread.
    void start(const URLRequest &request, Done done);

    /// Sends a request as it is, without following where the reply leads. The reply belongs to a
    /// manager of its own, which the caller deletes: a connection that is about to close is thus
    /// never taken for the next request.
    QNetworkReply *send(const URLRequest &request);
    /// The one who answers for that address inside the process, if anyone does.
    const LocalHost *localHost(const QUrl &url) const;

private:
    QHash<QString, LocalHost> hosts_;
    QList<QSslCertificate> authorities_;
};

/// The sentence for a transport error.
QString transportErrorText(QNetworkReply::NetworkError error);

} // namespace pindle
