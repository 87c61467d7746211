#include "PindleMac/Models.h"

#include "PindleMac/platform/PlatformError.h"

namespace pindle {

namespace {

QUrl websitePage(const QString &path) {
    QUrl url(QStringLiteral(PINDLE_WEBSITE_URL) + path, QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("https") || url.host().isEmpty())
        qFatal("PINDLE_WEBSITE_URL is not an https address");
    return url;
}

std::optional<AppError::Case> appErrorCase(const std::exception_ptr &error) {
    try {
        std::rethrow_exception(error);
    } catch (const AppError &appError) {
        return appError.errorCase();
    } catch (...) {
        return std::nullopt;
    }
}

} // namespace

QUrl AppLinkDestination::about() {
    return websitePage(QString());
}

QUrl AppLinkDestination::reportBugs() {
    return websitePage(QStringLiteral("/contact"));
}

AppError AppError::apiError(const QString &text) {
    AppError error(Case::apiError);
    error.text_ = text;
    return error;
}

QString AppError::errorDescription() const {
    switch (case_) {
    case Case::missingSelection:
        return QStringLiteral("No selected text was captured. Highlight text in any app, then "
                              "press the shortcut again.");
    case Case::clipboardAccess:
        return QStringLiteral("Clipboard capture failed. Grant Accessibility permission so the app "
                              "can copy your current selection.");
    case Case::accessibilityPermissionDenied:
        return QStringLiteral("Accessibility access is required to capture highlighted text. Open "
                              "Accessibility settings and enable access for Pindle.");
    case Case::missingKey:
        return QStringLiteral("The app could not register with the backend.");
    case Case::calendarPermissionDenied:
        return QStringLiteral("Calendar access is required to save events. If macOS did not show a "
                              "prompt, open Calendar permissions in System Settings and enable "
                              "access for this app.");
    case Case::invalidDates:
        return QStringLiteral("The converted event is missing a valid start date.");
    case Case::apiError:
        return text_;
    }
    Q_UNREACHABLE();
}

QString errorDescription(const std::exception_ptr &error) {
    try {
        std::rethrow_exception(error);
    } catch (const AppError &appError) {
        return appError.errorDescription();
    } catch (const PlatformError &platformError) {
        return platformError.localizedDescription();
    } catch (const std::exception &other) {
        return QString::fromUtf8(other.what());
    } catch (...) {
        return QStringLiteral("The operation could not be completed.");
    }
}

bool isAccessibilityPermissionError(const std::exception_ptr &error) {
    const auto errorCase = appErrorCase(error);
    return errorCase == AppError::Case::missingSelection ||
           errorCase == AppError::Case::clipboardAccess ||
           errorCase == AppError::Case::accessibilityPermissionDenied;
}

bool isCalendarPermissionError(const std::exception_ptr &error) {
    return appErrorCase(error) == AppError::Case::calendarPermissionDenied;
}

} // namespace pindle
