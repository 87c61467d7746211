#pragma once

#include <QString>
#include <QUrl>
#include <exception>
#include <optional>

namespace pindle {

/// The event draft as text fields; an absent value is the empty string.
struct CalendarEventDetails {
    QString title;
    QString description; ///< the calendar's notes
    QString location;
    QString startDate; ///< "yyyy-MM-dd"
    QString endDate;   ///< "yyyy-MM-dd"; empty means the start's day
    QString startTime; ///< "HH:mm", 24-hour; empty means "09:00"
    QString endTime;   ///< "HH:mm"; empty means one hour after the start
    QString timeZone;  ///< tz database identifier; empty or unknown means the machine's zone

    bool operator==(const CalendarEventDetails &) const = default;
};

/// One destination of a draft.
struct CalendarDestinationLink {
    enum class Kind {
        nativeApple, ///< saved through the system calendar
        browser,     ///< `url` is opened in the default browser
    };
    QString id; ///< "apple", "google", "outlook" or "yahoo"
    QString title;
    QString subtitle;
    std::optional<QUrl> url; ///< the prefilled web draft; absent for the system calendar
    Kind kind = Kind::browser;

    bool operator==(const CalendarDestinationLink &) const = default;
};

/// The product website's fixed pages. An address that does not parse stops the program.
struct AppLinkDestination {
    static QUrl about();
    static QUrl reportBugs();
};

/// Where the capture workflow stands.
enum class ParserPhase {
    idle,      ///< nothing captured since launch
    capturing, ///< reading the highlighted text of the application in front
    parsing,   ///< the text is with the conversion service
    ready,     ///< a reply has been applied
    failed,    ///< the last run ended with an error
};

/// The program's own failures, each with one fixed message for the user.
class AppError final : public std::exception {
public:
    enum class Case {
        missingSelection,
        clipboardAccess,
        accessibilityPermissionDenied,
        missingKey,
        calendarPermissionDenied,
        invalidDates,
        apiError, ///< carries its text
    };

    explicit AppError(Case errorCase)
        : case_(errorCase) {}
    static AppError apiError(const QString &text);

    Case errorCase() const { return case_; }
    /// The message to show: fixed for each case, the carried text for `apiError`.
    QString errorDescription() const;
    const char *what() const noexcept override { return "AppError"; }

    bool operator==(const AppError &other) const {
        return case_ == other.case_ && text_ == other.text_;
    }

private:
    Case case_;
    QString text_;
};

/// What the user is told of any thrown error: the message of an AppError, else the platform's own
/// description.
QString errorDescription(const std::exception_ptr &error);

/// True for the failures that a missing accessibility permission most often causes.
bool isAccessibilityPermissionError(const std::exception_ptr &error);
/// True for `AppError::Case::calendarPermissionDenied` only.
bool isCalendarPermissionError(const std::exception_ptr &error);

} // namespace pindle
