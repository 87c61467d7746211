#pragma once

#include "PindleMac/platform/Clock.h"

#include <QObject>

namespace pindle {

/// The machine's clock. Sleeps that are pending when it is destroyed never complete.
class SystemClock final : public Clock {
public:
    std::chrono::sys_seconds now() override;
    TimeZone currentTimeZone() override;
    void sleep(std::chrono::milliseconds duration, SleepCompletion completion) override;

private:
    QObject context_;
};

/// Where the machine's zone is written down.
struct ZoneSources {
    QString database = QStringLiteral("/usr/share/zoneinfo");
    QString link = QStringLiteral("/etc/localtime");
    QString name = QStringLiteral("/etc/timezone");
};

/// The identifier of the machine's zone: what TZ names, else where `link` points to, else what
/// `name` holds, else "UTC". Only identifiers of the tz database count; nothing is cached.
QString machineZoneIdentifier(const ZoneSources &sources);

} // namespace pindle
