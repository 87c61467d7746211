#include "PindleMac/platform/linux/clock/SystemClock.h"

#include "PindleMac/platform/linux/files/PrivateFile.h"

#include <QFileInfo>
#include <QTimer>
#include <algorithm>

namespace pindle {

namespace {

using std::chrono::steady_clock;

constexpr qint64 zoneNameLimit = 256; ///< bytes of /etc/timezone worth reading

void sleepUntil(QObject &context, steady_clock::time_point end, Clock::SleepCompletion completion) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - steady_clock::now());
    QTimer::singleShot(std::max(left, std::chrono::milliseconds(0)), Qt::PreciseTimer, &context,
                       [&context, end, completion = std::move(completion)]() mutable {
                           // The toolkit counts in whole milliseconds and may be early by a part.
                           if (steady_clock::now() < end)
                               sleepUntil(context, end, std::move(completion));
                           else
                               completion(false);
                       });
}

bool isZoneCharacter(QChar c) {
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || QStringLiteral("/_+-").contains(c));
}

/// The identifier in what TZ or a link says: "Europe/Berlin", ":Europe/Berlin" or a path into a
/// zone database, where "posix" and "right" are other editions of it. Empty when it names none.
QString identifierIn(QString text, const QString &database) {
    const QString marker = QStringLiteral("zoneinfo/");
    if (text.startsWith(QLatin1Char(':')))
        text.remove(0, 1);
    if (const auto at = text.lastIndexOf(marker); at >= 0)
        text.remove(0, at + marker.size());
    for (const QString &edition : {QStringLiteral("posix/"), QStringLiteral("right/")}) {
        if (text.startsWith(edition))
            text.remove(0, edition.size());
    }
    const bool plain = !text.isEmpty() && !text.startsWith(QLatin1Char('/')) &&
                       std::all_of(text.cbegin(), text.cend(), isZoneCharacter);
    return plain && QFileInfo(database + QLatin1Char('/') + text).isFile() ? text : QString();
}

} // namespace

QString machineZoneIdentifier(const ZoneSources &sources) {
    QString utc = QStringLiteral("UTC");
    if (qEnvironmentVariableIsSet("TZ")) {
        const QString value = qEnvironmentVariable("TZ");
        if (value.isEmpty())
            return utc; // as the C library takes it
        if (QString found = identifierIn(value, sources.database); !found.isEmpty())
            return found;
    }
    const QString target = QFileInfo(sources.link).symLinkTarget();
    if (QString found = identifierIn(target, sources.database); !found.isEmpty())
        return found;
    std::error_code error;
    const QByteArray name = readFile(sources.name, zoneNameLimit, error).value_or(QByteArray());
    QString found = identifierIn(QString::fromLatin1(name).trimmed(), sources.database);
    return found.isEmpty() ? utc : found;
}

std::chrono::sys_seconds SystemClock::now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

TimeZone SystemClock::currentTimeZone() {
    return {machineZoneIdentifier({})};
}

void SystemClock::sleep(std::chrono::milliseconds duration, SleepCompletion completion) {
    sleepUntil(context_, steady_clock::now() + duration, std::move(completion));
}

} // namespace pindle
