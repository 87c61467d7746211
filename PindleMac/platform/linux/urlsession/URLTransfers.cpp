#include "PindleMac/platform/linux/urlsession/URLTransfers.h"

#include "PindleMac/platform/linux/urlsession/OneShotBody.h"
#include "PindleMac/platform/linux/urlsession/URLTransfer.h"

#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkRequest>
#include <QSslConfiguration>

namespace pindle {

namespace {

/// The proxies of the user's environment. Asked on the background thread, so it may take its time.
class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override {
        return systemProxyForQuery(query);
    }
};

void setHeaders(QNetworkRequest &network, const URLRequest &request) {
    // Qt adds these four by itself and tells the user's languages and its own name with them; said
    // first, they say nothing. A connection of its own per request: one kept open may be dead by
    // the next press, after the machine has slept.
    network.setRawHeader("User-Agent", "Pindle");
    network.setRawHeader("Accept-Language", "*");
    network.setRawHeader("Accept-Encoding", "identity");
    network.setRawHeader("Connection", "close");
    for (const auto &[name, value] : request.headers)
        network.setRawHeader(name, value);
}

void setPolicies(QNetworkRequest &network) {
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    network.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    network.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    network.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    network.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    network.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
}

/// The completion runs whatever the host inside the process throws.
URLTransfers::LocalHost guarded(URLTransfers::LocalHost host) {
    return [host = std::move(host)](const URLRequest &request) {
        URLResult result;
        try {
            return host(request);
        } catch (const PlatformError &error) {
            result.error = error;
        } catch (const std::exception &) {
            result.error = PlatformError(QStringLiteral("The request could not be answered."));
        }
        return result;
    };
}

} // namespace

URLTransfers::URLTransfers(const QHash<QString, LocalHost> &hosts,
                           QList<QSslCertificate> authorities)
    : authorities_(std::move(authorities)) {
    for (auto it = hosts.cbegin(); it != hosts.cend(); ++it)
        hosts_.insert(it.key(), guarded(it.value()));
}

URLTransfers::~URLTransfers() = default;

void URLTransfers::start(const URLRequest &request, Done done) {
    if (request.url.scheme() != QStringLiteral("https") || request.url.host().isEmpty()) {
        URLResult result;
        result.error = PlatformError(
            QStringLiteral("The address of the service is not a secure web address."));
        done(std::move(result));
        return;
    }
    (new URLTransfer(*this, request, std::move(done)))->start();
}

QNetworkReply *URLTransfers::send(const URLRequest &request) {
    QNetworkRequest network(request.url);
    setHeaders(network, request);
    setPolicies(network);
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    tls.addCaCertificates(authorities_);
    network.setSslConfiguration(tls);

    auto *manager = new QNetworkAccessManager(this);
    manager->setProxyFactory(new SystemProxies);
    if (request.httpBody.isEmpty() && request.httpMethod == "GET")
        return manager->sendCustomRequest(network, request.httpMethod);
    network.setHeader(QNetworkRequest::ContentLengthHeader, request.httpBody.size());
    auto *body = new OneShotBody(request.httpBody);
    QNetworkReply *reply = manager->sendCustomRequest(network, request.httpMethod, body);
    body->setParent(reply);
    connect(reply, &QNetworkReply::metaDataChanged, body, &OneShotBody::replyHasCome);
    return reply;
}

const URLTransfers::LocalHost *URLTransfers::localHost(const QUrl &url) const {
    const auto found = hosts_.constFind(url.host());
    return found == hosts_.constEnd() ? nullptr : &*found;
}

QString transportErrorText(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return QStringLiteral("The request timed out.");
    case QNetworkReply::HostNotFoundError:
        return QStringLiteral("A server with the specified hostname could not be found.");
    case QNetworkReply::ConnectionRefusedError:
        return QStringLiteral("Could not connect to the server.");
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return QStringLiteral("The network connection was lost.");
    case QNetworkReply::SslHandshakeFailedError:
        return QStringLiteral("The server's certificate could not be verified.");
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::UnknownProxyError:
        return QStringLiteral("Could not connect to the network's proxy server.");
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
        return QStringLiteral("The server's reply could not be understood.");
    default:
        return QStringLiteral("The connection to the server failed.");
    }
}

} // namespace pindle
