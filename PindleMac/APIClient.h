#pragma once

#include "PindleMac/Models.h"
#include "PindleMac/platform/PlatformError.h"
#include "PindleMac/platform/URLSession.h"

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QUrl>
#include <optional>

namespace pindle {

class Clock;

/// A body that is not what the service promised. The description names the key, never its value.
class DecodingError final : public PlatformError {
public:
    using PlatformError::PlatformError;
};

/// Body of "on-install".
struct InstallRequest {
    QString browser;
    QString extensionVersion;
    std::optional<QString> email; ///< left out of the body when absent
};

/// Reply of "on-install".
struct InstallResponse {
    QString anonymizedKey; ///< opaque: kept and sent back unchanged
    bool operator==(const InstallResponse &) const = default;
};

/// Body of "text-conversion".
struct TextConversionRequest {
    QString text;
    QString referenceDate;     ///< the user's date now, "yyyy-MM-dd"
    QString referenceTimezone; ///< tz database identifier of the user's zone
    QString anonymizedKey;
};

/// Reply of "text-conversion".
struct TextConversionResponse {
    bool success = false;
    std::optional<CalendarEventDetails> details;
    std::optional<QString> userMessage; ///< a notice for the user
    std::optional<QString> error;       ///< why `success` is false
    bool operator==(const TextConversionResponse &) const = default;
};

/// JSON objects in UTF-8, written compactly.
QByteArray encode(const InstallRequest &request);
QByteArray encode(const TextConversionRequest &request);
QByteArray encode(const CalendarEventDetails &details);

/// Strict reads: unknown keys are ignored, a missing required key or a value of another type throws
/// DecodingError; optional keys may be absent or null.
InstallResponse decodeInstallResponse(const QByteArray &body);
TextConversionResponse decodeTextConversionResponse(const QByteArray &body);
CalendarEventDetails decodeCalendarEventDetails(const QByteArray &body);

/// The two calls of the conversion service. Each sends once, waits at most 60 seconds, and throws
/// AppError for replies that refuse, PlatformError for transport and decoding failures.
class APIClient {
public:
    APIClient(URLSession &session, Clock &clock);

    const QUrl &baseURL() const { return baseURL_; }

    QCoro::Task<InstallResponse> registerInstall(QString version);
    QCoro::Task<TextConversionResponse> convertText(QString text, QString anonymizedKey);

private:
    QCoro::Task<QByteArray> post(QString endpoint, QByteArray body);
    static void validate(const URLResponse &response, const QByteArray &data);

    URLSession &session_;
    Clock &clock_;
    QUrl baseURL_;
};

} // namespace pindle
