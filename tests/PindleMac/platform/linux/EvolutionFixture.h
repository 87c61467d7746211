#pragma once

#include "EventStoreFixture.h"
#include "PindleMac/platform/linux/eventstore/DesktopEventStore.h"
#include "PindleMac/platform/linux/eventstore/EvolutionBackend.h"

#include <csignal>

namespace pindle {

/// Processes of this desktop whose program has this name; empty when there are none.
QList<pid_t> processesNamed(const QByteArray &program);

inline const QByteArray calendarFactory = QByteArrayLiteral("evolution-calendar-factory");
inline const QByteArray sourceRegistry = QByteArrayLiteral("evolution-source-registry");

/// The user's calendar on a desktop with the data server, whose calendar is the desktop's and
/// starts with what earlier tests of the suite left in it.
struct EvolutionCalendar : CalendarFolder {
    std::unique_ptr<DesktopEventStore> own =
        std::make_unique<DesktopEventStore>(decisions, user.ask(), loadEvolutionBackend, folder);
    std::chrono::microseconds lastSave{0};

    void SetUp() override { allow(); }
    /// Requests access, which connects.
    void open();
    std::unique_ptr<EKEvent> draft(const QString &title, sys_seconds start = summer,
                                   const char *zone = "Europe/Berlin",
                                   std::chrono::seconds length = 1h);
    /// The message; empty when it was saved.
    QString save(EKEvent &event);
    QString save(const QString &title) { return save(*draft(title)); }
    /// The events of this title, as other programs read them.
    QJsonArray readBack(const QString &title);
};

/// Stops a process for its lifetime.
class Stopped {
public:
    explicit Stopped(const QByteArray &program)
        : pids_(processesNamed(program)) {
        for (const pid_t pid : pids_)
            ::kill(pid, SIGSTOP);
    }
    ~Stopped() { letGo(); }
    Stopped(const Stopped &) = delete;
    Stopped &operator=(const Stopped &) = delete;

    bool any() const { return !pids_.isEmpty(); }
    void letGo() {
        for (const pid_t pid : std::exchange(pids_, {}))
            ::kill(pid, SIGCONT);
    }

private:
    QList<pid_t> pids_;
};

/// Ends all processes of a program outright; false when there was none.
bool killAll(const QByteArray &program);

} // namespace pindle
