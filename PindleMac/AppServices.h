#pragma once

#include "PindleMac/APIClient.h"
#include "PindleMac/Models.h"
#include "PindleMac/platform/Accessibility.h"
#include "PindleMac/platform/Clock.h"
#include "PindleMac/platform/Platform.h"

#include <QCoroTask>
#include <QList>
#include <QString>
#include <QUrl>
#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pindle {

/// The calendar systems a date can be read in.
enum class Calendar { gregorian };

/// A draft's dates as instants. `endDate` is at least 30 minutes after `startDate`.
struct ResolvedDateRange {
    std::chrono::sys_seconds startDate;
    std::chrono::sys_seconds endDate;
    TimeZone timeZone; ///< the zone the draft's wall-clock texts were read in
    bool operator==(const ResolvedDateRange &) const = default;
};

/// All that the workflow wants of the platform. Main thread only; asynchronous operations suspend
/// there and resume there. Errors are AppError, or the platform's own, unchanged.
class AppServices {
public:
    explicit AppServices(Platform &platform);

    // Destinations and links

    /// The four destinations of a draft, the system calendar first. Throws AppError (invalidDates).
    QList<CalendarDestinationLink> calendarLinks(const CalendarEventDetails &details);
    /// Opens the link's address in the browser; without one nothing happens.
    void openCalendarLink(const CalendarDestinationLink &link);
    /// Opens the contact page with the install's key; throws what ensureRegistered() throws.
    QCoro::Task<void> openBugReport();

    // Saving

    /// Asks for access if need be, then writes one event into the default calendar. Throws AppError
    /// (calendarPermissionDenied, invalidDates) or the store's error; then nothing was written.
    QCoro::Task<void> saveToCalendar(CalendarEventDetails details);

    // Conversion service

    /// The install's identity key, obtained from the service the first time and kept.
    QCoro::Task<QString> ensureRegistered();
    /// The service's reply to `text`, sent as it is.
    QCoro::Task<TextConversionResponse> convertSelection(QString text);

    // Selection

    /// The highlighted text of the application in front, trimmed and not empty. Throws AppError
    /// (missingSelection, clipboardAccess), or CancellationError out of a wait.
    QCoro::Task<QString> captureSelectedText();

    // Permissions

    bool accessibilityPermissionEnabled();
    void promptForAccessibilityPermission();
    QString calendarPermissionStatusText();
    QCoro::Task<bool> requestCalendarPermissionIfNeeded();
    void openCalendarSettings();
    void openAccessibilitySettings();
    void openURL(const QUrl &url);

    /// The machine's zone now.
    TimeZone currentTimeZone();

private:
    friend struct TestAccess;

    ResolvedDateRange resolvedDateRange(const CalendarEventDetails &details);
    static std::chrono::sys_seconds eventDate(const QString &date, const QString &time,
                                              const TimeZone &timeZone, Calendar calendar);
    static QString fallbackEndTime(std::chrono::sys_seconds start, const TimeZone &timeZone);

    static std::optional<QUrl> googleCalendarURL(const CalendarEventDetails &details,
                                                 const ResolvedDateRange &range);
    static std::optional<QUrl> outlookCalendarURL(const CalendarEventDetails &details,
                                                  const ResolvedDateRange &range);
    static std::optional<QUrl> yahooCalendarURL(const CalendarEventDetails &details,
                                                const ResolvedDateRange &range);
    static QString utcCompactTimestamp(std::chrono::sys_seconds instant);
    static QString isoTimestamp(std::chrono::sys_seconds instant, const TimeZone &timeZone);
    static QString localCompactTimestamp(std::chrono::sys_seconds instant,
                                         const TimeZone &timeZone);

    QCoro::Task<bool> requestCalendarAccess();

    QCoro::Task<std::optional<QString>> readSelectedTextViaAccessibility();
    QCoro::Task<std::optional<QString>> copyStringAttribute(QString attribute, AXUIElement element);
    QCoro::Task<std::optional<AXObject>> copyAttribute(QString attribute, AXUIElement element);
    QCoro::Task<std::optional<QString>> readSelectedRange(AXUIElement element);
    QCoro::Task<QString> copySelectionOnce();
    QCoro::Task<QString> copySelectionThroughClipboard();
    void postCopyKeystroke();
    QCoro::Task<void> wait(std::chrono::milliseconds duration);
    QCoro::Task<std::optional<QString>> clipboardText();
    void restoreClipboard(const std::optional<QString> &text);

    void openFirst(const QList<QString> &candidates);

    struct CopyOutcome {
        QString text;
        std::exception_ptr error;
        QString value() const; ///< the text, or throws the error
    };
    struct CopyUnderWay {
        std::vector<std::function<void(CopyOutcome)>> waiting;
    };

    Platform &platform_;
    APIClient apiClient_;
    std::shared_ptr<CopyUnderWay> copyUnderWay_; ///< null while no copy is under way
};

} // namespace pindle
