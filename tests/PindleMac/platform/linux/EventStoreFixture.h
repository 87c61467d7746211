#pragma once

#include "PindleMac/platform/linux/eventstore/IcsFolderEventStore.h"
#include "PindleMac/platform/linux/questions/AccessDecisions.h"
#include "ServicesSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <vector>

namespace pindle {

using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

inline const sys_seconds summer = sys_days{std::chrono::May / 20 / 2027} + 13h + 30min;
inline const sys_seconds winter = sys_days{std::chrono::December / 3 / 2027} + 8h;

/// Questions that a test answers when it likes.
struct ScriptedUser {
    QList<Question> asked;
    std::vector<std::function<void(QuestionAnswer)>> open;

    AskQuestion ask() {
        return [this](const Question &question, std::function<void(QuestionAnswer)> answered) {
            asked.append(question);
            open.push_back(std::move(answered));
        };
    }
    void answer(QuestionAnswer answer) {
        const auto answered = std::move(open.front());
        open.erase(open.begin());
        answered(answer);
    }
};

/// A calendar folder, permissions and a user of the test's own.
struct CalendarFolder : testing::Test {
    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("data/pindle/calendar"));
    QString permissions = home.filePath(QStringLiteral("config/pindle/permissions.json"));
    AccessDecisions decisions{permissions};
    ScriptedUser user;
    std::unique_ptr<IcsFolderEventStore> store = make();

    std::unique_ptr<IcsFolderEventStore> make() {
        return std::make_unique<IcsFolderEventStore>(decisions, user.ask(), folder);
    }
    void allow() { decisions.setCalendar(AccessDecisions::Decision::writeOnly); }

    std::unique_ptr<EKEvent> event(const QString &title, sys_seconds start, const char *zone,
                                   std::chrono::seconds length = 1h) {
        auto made = store->makeEvent();
        made->setCalendar(store->defaultCalendarForNewEvents());
        made->setTitle(title);
        made->setLocation(QStringLiteral("Room 1"));
        made->setNotes(QStringLiteral("Bring tea"));
        made->setStartDate(start);
        made->setEndDate(start + length);
        made->setTimeZone({QString::fromLatin1(zone)});
        return made;
    }
    QStringList files() const { return names(folder); }
    QString onlyFile() const {
        EXPECT_EQ(files().size(), 1);
        return files().isEmpty() ? QString() : folder + QLatin1Char('/') + files().first();
    }
    QJsonObject readBack(const QString &path) {
        const auto array =
            QJsonDocument::fromJson(runPython(QStringLiteral("read_events.py"), {path})).array();
        EXPECT_EQ(array.size(), 1);
        return array.first().toObject();
    }
    /// Saves and reads with another library.
    QJsonObject saved(const QString &title, sys_seconds start, const char *zone,
                      std::chrono::seconds length = 1h) {
        allow();
        const auto before = files();
        store->save(*event(title, start, zone, length), EKSpan::thisEvent);
        for (const QString &name : files()) {
            if (!before.contains(name))
                return readBack(folder + QLatin1Char('/') + name);
        }
        ADD_FAILURE() << "no file appeared";
        return {};
    }
    QString refusal(EKEvent &refused) {
        try {
            store->save(refused, EKSpan::thisEvent);
        } catch (const PlatformError &error) {
            return error.localizedDescription();
        }
        return QStringLiteral("(saved)");
    }
};

} // namespace pindle
