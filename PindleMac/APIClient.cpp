#include "PindleMac/APIClient.h"

#include "PindleMac/Async.h"
#include "PindleMac/DateFormat.h"
#include "PindleMac/Text.h"

#include <QStringDecoder>

namespace pindle {

namespace {

constexpr std::chrono::seconds requestTimeout{60};
constexpr int firstSuccess = 200;
constexpr int lastSuccess = 299;

QUrl serviceAddress() {
    QUrl url(QStringLiteral(PINDLE_SERVICE_URL), QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("https") || url.host().isEmpty())
        qFatal("PINDLE_SERVICE_URL is not an https address");
    return url;
}

QUrl appendingPathComponent(QUrl url, const QString &component) {
    QString path = url.path();
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    url.setPath(path + component);
    return url;
}

/// The body as text; absent when it is not UTF-8.
std::optional<QString> utf8Text(const QByteArray &data) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(data);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

APIClient::APIClient(URLSession &session, Clock &clock)
    : session_(session)
    , clock_(clock)
    , baseURL_(serviceAddress()) {}

QCoro::Task<InstallResponse> APIClient::registerInstall(QString version) {
    const InstallRequest request{QStringLiteral("macOS App"), version, std::nullopt};
    const QByteArray data = co_await post(QStringLiteral("on-install"), encode(request));
    co_return decodeInstallResponse(data);
}

QCoro::Task<TextConversionResponse> APIClient::convertText(QString text, QString anonymizedKey) {
    const TimeZone zone = clock_.currentTimeZone();
    const TextConversionRequest request{
        text, formatDate(clock_.now(), zone, QStringLiteral("yyyy-MM-dd")), zone.identifier,
        anonymizedKey};
    const QByteArray data = co_await post(QStringLiteral("text-conversion"), encode(request));
    const TextConversionResponse reply = decodeTextConversionResponse(data);
    if (!reply.success)
        throw AppError::apiError(reply.error.value_or(QStringLiteral("Text conversion failed.")));
    co_return reply;
}

QCoro::Task<QByteArray> APIClient::post(QString endpoint, QByteArray body) {
    URLRequest request;
    request.url = appendingPathComponent(baseURL_, endpoint);
    request.timeoutInterval = requestTimeout;
    request.httpMethod = QByteArrayLiteral("POST");
    request.headers = {{QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/json")}};
    request.httpBody = body;
    const URLResult result =
        co_await awaitCompletion<URLResult>([&](URLSession::Completion completion) {
            session_.dataTask(request, std::move(completion));
        });
    if (result.error)
        throw *result.error;
    validate(result.response, result.data);
    co_return result.data;
}

void APIClient::validate(const URLResponse &response, const QByteArray &data) {
    if (!response.isHTTP)
        throw AppError::apiError(QStringLiteral("Unexpected response from the server."));
    if (response.statusCode >= firstSuccess && response.statusCode <= lastSuccess)
        return;
    const QString message = trimmingWhitespaceAndNewlines(utf8Text(data).value_or(QString()));
    if (!message.isEmpty())
        throw AppError::apiError(message);
    throw AppError::apiError(
        QStringLiteral("Server request failed with status %1.").arg(response.statusCode));
}

} // namespace pindle
