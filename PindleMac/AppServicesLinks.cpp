#include "PindleMac/AppServices.h"
#include "PindleMac/DateFormat.h"
#include "PindleMac/platform/Workspace.h"

#include <QPair>

namespace pindle {

namespace {

using QueryItem = QPair<QString, QString>;

const TimeZone &utc() {
    static const TimeZone zone{QStringLiteral("UTC")};
    return zone;
}

/// RFC 3986 query characters, less the two that separate items.
QString percentEncoded(const QString &value) {
    return QString::fromLatin1(QUrl::toPercentEncoding(value, "!$'()*+,;:@/?"));
}

/// `base` with its query replaced by the items, every one written, also with an empty value.
std::optional<QUrl> withQuery(const QString &base, const QList<QueryItem> &items) {
    QUrl url(base, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    QStringList parts;
    for (const auto &[name, value] : items)
        parts += percentEncoded(name) + QLatin1Char('=') + percentEncoded(value);
    url.setQuery(parts.join(QLatin1Char('&')), QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

CalendarDestinationLink browserLink(const QString &id, const QString &title,
                                    const std::optional<QUrl> &url) {
    return {id, title, QStringLiteral("Open a prefilled browser draft"), url,
            CalendarDestinationLink::Kind::browser};
}

} // namespace

QList<CalendarDestinationLink> AppServices::calendarLinks(const CalendarEventDetails &details) {
    const ResolvedDateRange range = resolvedDateRange(details);
    return {
        {QStringLiteral("apple"), QStringLiteral("Apple Calendar"),
         QStringLiteral("Save directly on this Mac"), std::nullopt,
         CalendarDestinationLink::Kind::nativeApple},
        browserLink(QStringLiteral("google"), QStringLiteral("Google Calendar"),
                    googleCalendarURL(details, range)),
        browserLink(QStringLiteral("outlook"), QStringLiteral("Outlook"),
                    outlookCalendarURL(details, range)),
        browserLink(QStringLiteral("yahoo"), QStringLiteral("Yahoo Calendar"),
                    yahooCalendarURL(details, range)),
    };
}

std::optional<QUrl> AppServices::googleCalendarURL(const CalendarEventDetails &details,
                                                   const ResolvedDateRange &range) {
    return withQuery(
        QStringLiteral("https://calendar.google.com/calendar/render"),
        {{QStringLiteral("action"), QStringLiteral("TEMPLATE")},
         {QStringLiteral("text"), details.title},
         {QStringLiteral("details"), details.description},
         {QStringLiteral("location"), details.location},
         {QStringLiteral("dates"), utcCompactTimestamp(range.startDate) + QLatin1Char('/') +
                                       utcCompactTimestamp(range.endDate)},
         {QStringLiteral("ctz"), range.timeZone.identifier}});
}

std::optional<QUrl> AppServices::outlookCalendarURL(const CalendarEventDetails &details,
                                                    const ResolvedDateRange &range) {
    return withQuery(QStringLiteral("https://outlook.office.com/calendar/0/deeplink/compose"),
                     {{QStringLiteral("path"), QStringLiteral("/calendar/action/compose")},
                      {QStringLiteral("rru"), QStringLiteral("addevent")},
                      {QStringLiteral("subject"), details.title},
                      {QStringLiteral("body"), details.description},
                      {QStringLiteral("location"), details.location},
                      {QStringLiteral("startdt"), isoTimestamp(range.startDate, range.timeZone)},
                      {QStringLiteral("enddt"), isoTimestamp(range.endDate, range.timeZone)}});
}

std::optional<QUrl> AppServices::yahooCalendarURL(const CalendarEventDetails &details,
                                                  const ResolvedDateRange &range) {
    return withQuery(
        QStringLiteral("https://calendar.yahoo.com/"),
        {{QStringLiteral("v"), QStringLiteral("60")},
         {QStringLiteral("view"), QStringLiteral("d")},
         {QStringLiteral("type"), QStringLiteral("20")},
         {QStringLiteral("title"), details.title},
         {QStringLiteral("desc"), details.description},
         {QStringLiteral("in_loc"), details.location},
         {QStringLiteral("st"), localCompactTimestamp(range.startDate, range.timeZone)},
         {QStringLiteral("et"), localCompactTimestamp(range.endDate, range.timeZone)}});
}

QString AppServices::utcCompactTimestamp(std::chrono::sys_seconds instant) {
    return formatDate(instant, utc(), QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
}

QString AppServices::isoTimestamp(std::chrono::sys_seconds instant, const TimeZone &timeZone) {
    return formatDate(instant, timeZone, QStringLiteral("yyyy-MM-dd'T'HH:mm:ssXXX"));
}

QString AppServices::localCompactTimestamp(std::chrono::sys_seconds instant,
                                           const TimeZone &timeZone) {
    return formatDate(instant, timeZone, QStringLiteral("yyyyMMdd'T'HHmmss"));
}

void AppServices::openCalendarLink(const CalendarDestinationLink &link) {
    if (link.url)
        platform_.workspace.open(*link.url);
}

QCoro::Task<void> AppServices::openBugReport() {
    const QString key = co_await ensureRegistered();
    const QUrl page = AppLinkDestination::reportBugs();
    const auto url = withQuery(page.toString(QUrl::FullyEncoded),
                               {{QStringLiteral("reason"), QStringLiteral("bug")},
                                {QStringLiteral("anonymized_key"), key}});
    platform_.workspace.open(url.value_or(page));
}

} // namespace pindle
