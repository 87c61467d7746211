#include "EvolutionFixture.h"

#include <QDir>
#include <QElapsedTimer>

namespace pindle {

namespace {

QByteArray procFile(const QString &pid, const char *name) {
    return contents(QStringLiteral("/proc/") + pid + QLatin1Char('/') + QString::fromLatin1(name));
}

} // namespace

QList<pid_t> processesNamed(const QByteArray &program) {
    const QByteArray mark = "PINDLE_DESKTOP_ROOT=" + qgetenv("PINDLE_DESKTOP_ROOT");
    QList<pid_t> found;
    for (const QString &pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        const QByteArray command = procFile(pid, "cmdline").split('\0').first();
        if (command.endsWith('/' + program) && procFile(pid, "environ").split('\0').contains(mark))
            found.append(pid.toInt());
    }
    return found;
}

bool killAll(const QByteArray &program) {
    const auto pids = processesNamed(program);
    for (const pid_t pid : pids)
        ::kill(pid, SIGKILL);
    return !pids.isEmpty() && waitUntil([&] { return processesNamed(program).isEmpty(); });
}

void EvolutionCalendar::open() {
    bool done = false;
    own->requestWriteOnlyAccessToEvents(
        [&](bool granted, const std::optional<PlatformError> &error) {
            EXPECT_TRUE(granted);
            EXPECT_FALSE(error);
            done = true;
        });
    ASSERT_TRUE(waitUntil([&] { return done; }));
}

std::unique_ptr<EKEvent> EvolutionCalendar::draft(const QString &title, sys_seconds start,
                                                  const char *zone, std::chrono::seconds length) {
    auto made = own->makeEvent();
    made->setCalendar(own->defaultCalendarForNewEvents());
    made->setTitle(title);
    made->setLocation(QStringLiteral("Room 1"));
    made->setNotes(QStringLiteral("Bring tea"));
    made->setStartDate(start);
    made->setEndDate(start + length);
    made->setTimeZone({QString::fromLatin1(zone)});
    return made;
}

QString EvolutionCalendar::save(EKEvent &event) {
    QElapsedTimer timer;
    timer.start();
    QString message;
    try {
        own->save(event, EKSpan::thisEvent);
    } catch (const PlatformError &error) {
        message = error.localizedDescription();
    }
    lastSave = std::chrono::microseconds(timer.nsecsElapsed() / 1000);
    return message;
}

QJsonArray EvolutionCalendar::readBack(const QString &title) {
    const QByteArray output = runPython(QStringLiteral("read_calendar.py"), {});
    EXPECT_FALSE(output.isEmpty()) << "the calendar was not read";
    QJsonArray found;
    for (const QJsonValue &event : QJsonDocument::fromJson(output).array()) {
        if (event[QStringLiteral("title")].toString() == title)
            found.append(event);
    }
    return found;
}

} // namespace pindle
