#pragma once

#include "PindleMac/platform/PlatformError.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QUrl>
#include <chrono>
#include <functional>
#include <optional>

namespace pindle {

struct URLRequest {
    QUrl url;
    QByteArray httpMethod;
    QList<QPair<QByteArray, QByteArray>> headers; ///< name and value, in the order they are set
    QByteArray httpBody;
    std::chrono::seconds timeoutInterval{60};
};

struct URLResponse {
    bool isHTTP = false;
    int statusCode = 0; ///< meaningful for an HTTP reply only
};

/// What a request came to: a reply with its body, or a transport error.
struct URLResult {
    URLResponse response;
    QByteArray data;
    std::optional<PlatformError> error;
};

/// HTTP transfers. They run on a background executor; the completion runs on the main thread.
/// Certificates are verified; no cookies, no cache, no credentials; replies are capped in size.
class URLSession {
public:
    using Completion = std::function<void(URLResult)>;

    virtual ~URLSession() = default;

    /// Sends `request` once and gives up after its timeout.
    virtual void dataTask(const URLRequest &request, Completion completion) = 0;
};

} // namespace pindle
