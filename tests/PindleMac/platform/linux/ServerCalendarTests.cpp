#include "EventStoreFixture.h"
#include "PindleMac/platform/linux/eventstore/IcsEvent.h"
#include "PindleMac/platform/linux/eventstore/ServerCalendar.h"
#include "ScriptedBackend.h"

#include <QElapsedTimer>

namespace pindle {
namespace {

using State = BackendConnection::State;
using Outcome = BackendSave::Outcome;

struct AServerCalendar : testing::Test {
    std::shared_ptr<ScriptedStore> store = std::make_shared<ScriptedStore>();
    std::unique_ptr<ServerCalendar> calendar =
        std::make_unique<ServerCalendar>(ScriptedStore::reach(store));
    qint64 lastSaveMs = 0;

    ~AServerCalendar() override { store->letGo(); }

    void connect() {
        bool done = false;
        calendar->connect([&] { done = true; });
        ASSERT_TRUE(waitUntil([&] { return done; }));
    }
    IcsEvent event(const QString &title) const {
        IcsEvent made;
        made.calendar = EKCalendar{QStringLiteral("cal-1")};
        made.title = title;
        made.start = summer;
        made.end = summer + 1h;
        made.zone = {QStringLiteral("Europe/Berlin")};
        return made;
    }
    /// The message; empty when it was saved.
    QString save(const IcsEvent &saved) {
        QElapsedTimer timer;
        timer.start();
        QString message;
        try {
            calendar->save(saved);
        } catch (const PlatformError &error) {
            message = error.localizedDescription();
        }
        lastSaveMs = timer.elapsed();
        return message;
    }
    QString save(const QString &title = QStringLiteral("Tea")) { return save(event(title)); }
};

TEST_F(AServerCalendar, nothingIsLoadedBeforeItIsConnectedTo) {
    EXPECT_FALSE(waitUntil([&] { return store->backends() > 0; }, 50ms));
    connect();
    EXPECT_EQ(store->backends(), 1);
    EXPECT_EQ(calendar->calendar(), (EKCalendar{QStringLiteral("cal-1")}));
    connect();
    EXPECT_EQ(store->backends(), 1);
    EXPECT_EQ(store->connects(), 2);
}

TEST_F(AServerCalendar, anEventArrivesInBothWritingsOfTheSameInstants) {
    connect();
    EXPECT_EQ(save(), QString());
    ASSERT_EQ(store->events().size(), 1U);
    const auto [uid, arrived] = *store->events().begin();
    EXPECT_EQ(arrived.start, summer.time_since_epoch().count());
    EXPECT_EQ(arrived.end, arrived.start + 3600);
    for (const std::string &text : {arrived.zoned, arrived.universal}) {
        EXPECT_NE(text.find("\r\nUID:" + uid + "\r\n"), std::string::npos);
        EXPECT_NE(text.find("\r\nSUMMARY:Tea\r\n"), std::string::npos);
    }
    EXPECT_NE(arrived.zoned.find("\r\nDTSTART;TZID=Europe/Berlin:20270520T153000\r\n"),
              std::string::npos);
    EXPECT_NE(arrived.zoned.find("BEGIN:VTIMEZONE"), std::string::npos);
    EXPECT_NE(arrived.universal.find("\r\nDTSTART:20270520T133000Z\r\n"), std::string::npos);
    EXPECT_EQ(arrived.universal.find("VTIMEZONE"), std::string::npos);
}

TEST_F(AServerCalendar, everyDeliberateSaveIsAnEventOfItsOwn) {
    connect();
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(store->events().size(), 2U);
}

TEST_F(AServerCalendar, aRefusalIsToldInTheStoresOwnWordsAndTheNextSaveWorks) {
    connect();
    store->result = {Outcome::refused, "Permission denied"};
    EXPECT_EQ(save(), QStringLiteral("Permission denied"));
    EXPECT_TRUE(store->events().empty());
    store->result = {Outcome::saved, {}};
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(store->events().size(), 1U);
}

TEST_F(AServerCalendar, withoutADefaultCalendarNothingIsSent) {
    connect();
    IcsEvent homeless = event(QStringLiteral("Tea"));
    homeless.calendar.reset();
    EXPECT_TRUE(save(homeless).startsWith(QStringLiteral("No default calendar")));
    EXPECT_EQ(store->saves(), 0);
}

TEST_F(AServerCalendar, aYearTheFormatCannotWriteIsRefused) {
    connect();
    IcsEvent far = event(QStringLiteral("Far"));
    far.start = sys_days{std::chrono::May / 1 / 12027};
    EXPECT_TRUE(save(far).contains(QStringLiteral("year")));
    EXPECT_EQ(store->saves(), 0);
}

TEST_F(AServerCalendar, aSilentStoreCostsAQuarterOfASecondAndIsNotCalledAFailure) {
    connect();
    store->hang(ScriptedStore::Hang::deaf);
    const QString message = save();
    EXPECT_GE(lastSaveMs, 240);
    EXPECT_LT(lastSaveMs, 400);
    EXPECT_EQ(message, QStringLiteral("“Personal” has not confirmed the event yet. It may still "
                                      "appear there; saving it again does not add it twice."));
    EXPECT_TRUE(store->events().empty());
}

TEST_F(AServerCalendar, aLateSuccessLeavesOneEventHoweverOftenItIsSaved) {
    connect();
    store->hang(ScriptedStore::Hang::deaf);
    EXPECT_FALSE(save().isEmpty());
    EXPECT_FALSE(save().isEmpty());
    EXPECT_EQ(store->saves(), 1) << "it is under way already";
    store->letGo();
    ASSERT_TRUE(waitUntil([&] { return store->events().size() == 1; }));
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(store->events().size(), 1U);
    // That one is settled: whoever saves once more wants another.
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(store->events().size(), 2U);
}

TEST_F(AServerCalendar, aLateSuccessThatTheUserDeletedIsSavedAgain) {
    connect();
    store->forgetsEvents = true;
    store->hang(ScriptedStore::Hang::deaf);
    EXPECT_FALSE(save().isEmpty());
    store->letGo();
    ASSERT_TRUE(waitUntil([&] { return store->saves() == 1; }));
    connect(); // the late answer is in
    store->forgetsEvents = false;
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(store->events().size(), 1U);
}

TEST_F(AServerCalendar, whatWasToldNotSavedIsNotSavedLater) {
    connect();
    store->hang(ScriptedStore::Hang::deaf);
    EXPECT_FALSE(save(QStringLiteral("First")).isEmpty());
    EXPECT_EQ(save(QStringLiteral("Second")),
              QStringLiteral("The calendar service does not answer. The event was not saved."));
    EXPECT_LT(lastSaveMs, 400);
    store->letGo();
    connect(); // behind both in the line
    ASSERT_EQ(store->events().size(), 1U);
    EXPECT_NE(store->events().begin()->second.zoned.find("SUMMARY:First"), std::string::npos);
    EXPECT_EQ(save(QStringLiteral("Second")), QString());
    EXPECT_EQ(store->events().size(), 2U);
}

TEST_F(AServerCalendar, anUncertainSaveSaysSoAndIsRepeatedUnderTheSameIdentifier) {
    connect();
    store->result = {Outcome::unknown, "The store went away"};
    EXPECT_EQ(save(), QStringLiteral("The store went away. The event may have been saved all the "
                                     "same; saving it again does not add it twice."));
    EXPECT_FALSE(save(QStringLiteral("Other")).isEmpty());
    store->result = {Outcome::saved, {}};
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(save(QStringLiteral("Other")), QString());
    EXPECT_EQ(store->events().size(), 2U);
    EXPECT_EQ(store->saves(), 4);
}

TEST_F(AServerCalendar, anEditedEventIsAnotherOne) {
    connect();
    store->result = {Outcome::unknown, "The store went away"};
    IcsEvent edited = event(QStringLiteral("Tea"));
    EXPECT_FALSE(save(edited).isEmpty());
    store->result = {Outcome::saved, {}};
    edited.zone = {QStringLiteral("Europe/Paris")}; // the same instants
    EXPECT_EQ(save(edited), QString());
    edited.notes = QStringLiteral("Bring cake");
    EXPECT_EQ(save(edited), QString());
    EXPECT_EQ(store->events().size(), 3U);
}

TEST_F(AServerCalendar, aFailedConnectionIsToldAtTheSaveAndTheNextOneWorks) {
    store->answer = {State::failed, {}, {}, "Unable to connect to “Personal”"};
    connect();
    EXPECT_FALSE(calendar->isAbsent());
    EXPECT_FALSE(calendar->calendar());
    EXPECT_EQ(save(), QStringLiteral("Unable to connect to “Personal”"));
    EXPECT_EQ(store->saves(), 0);
    store->answer = {State::connected, "cal-1", "Personal", {}};
    connect();
    EXPECT_EQ(save(), QString());
    EXPECT_EQ(store->events().size(), 1U);
}

TEST_F(AServerCalendar, aConnectionThatHangsIsGivenUpAfterFiveSeconds) {
    store->hang(ScriptedStore::Hang::interruptible);
    QElapsedTimer timer;
    timer.start();
    bool done = false;
    calendar->connect([&] { done = true; });
    ASSERT_TRUE(waitUntil([&] { return done; }, 8s));
    EXPECT_GE(timer.elapsed(), 4900);
    EXPECT_LT(timer.elapsed(), 5500);
    EXPECT_EQ(save(),
              QStringLiteral("The calendar service does not answer. The event was not saved."));
    store->letGo();
    connect();
    EXPECT_EQ(save(), QString()) << "the interruption ends with the call it was for";
    EXPECT_EQ(store->interruptions(), 1);
}

TEST_F(AServerCalendar, aSaveUnderWayIsToldByItsNameEvenWhenTheConnectionIsGivenUp) {
    connect();
    store->hang(ScriptedStore::Hang::deaf);
    const QString first = save();
    bool done = false;
    calendar->connect([&] { done = true; }); // behind the save that hangs
    ASSERT_TRUE(waitUntil([&] { return done; }, 8s));
    EXPECT_EQ(save(), first);
    EXPECT_EQ(store->saves(), 1);
    EXPECT_EQ(store->interruptions(), 0) << "the save goes on";
}

TEST_F(AServerCalendar, connectionsAskedForMeanwhileShareOne) {
    store->hang(ScriptedStore::Hang::deaf);
    int done = 0;
    for (int i = 0; i < 3; ++i)
        calendar->connect([&] { ++done; });
    store->letGo();
    ASSERT_TRUE(waitUntil([&] { return done == 3; }));
    EXPECT_EQ(store->connects(), 1);
}

TEST_F(AServerCalendar, aStoreOnceConnectedToNeverBecomesAbsent) {
    store->answer = {State::absent, {}, {}, {}};
    connect();
    EXPECT_TRUE(calendar->isAbsent());
    store->answer = {State::connected, "cal-1", "Personal", {}};
    connect();
    EXPECT_FALSE(calendar->isAbsent());
    store->answer = {State::absent, {}, {}, {}};
    connect();
    EXPECT_FALSE(calendar->isAbsent());
    EXPECT_TRUE(save().startsWith(QStringLiteral("No default calendar")));
    EXPECT_EQ(store->saves(), 0);
}

TEST_F(AServerCalendar, aBackendIsLookedForAgainUntilThereIsOne) {
    int looks = 0;
    bool installed = false;
    ServerCalendar late([&]() -> std::unique_ptr<CalendarBackend> {
        ++looks;
        return installed ? std::make_unique<ScriptedBackend>(store) : nullptr;
    });
    const auto connectLate = [&] {
        bool done = false;
        late.connect([&] { done = true; });
        ASSERT_TRUE(waitUntil([&] { return done; }));
    };
    connectLate();
    EXPECT_TRUE(late.isAbsent());
    installed = true;
    connectLate();
    EXPECT_FALSE(late.isAbsent());
    connectLate();
    EXPECT_EQ(looks, 2);
}

TEST_F(AServerCalendar, itsEndInterruptsTheStoreAndNothingArrivesAfterwards) {
    store->hang(ScriptedStore::Hang::interruptible);
    bool done = false;
    calendar->connect([&] { done = true; });
    ASSERT_TRUE(waitUntil([&] { return store->connects() == 1; }));
    QElapsedTimer timer;
    timer.start();
    calendar.reset();
    EXPECT_LT(timer.elapsed(), 200);
    EXPECT_FALSE(waitUntil([&] { return done; }, 50ms));
}

TEST_F(AServerCalendar, itsEndDoesNotWaitForAStoreThatHearsNothing) {
    store->hang(ScriptedStore::Hang::deaf);
    bool done = false;
    calendar->connect([&] { done = true; });
    ASSERT_TRUE(waitUntil([&] { return store->connects() == 1; }));
    QElapsedTimer timer;
    timer.start();
    calendar.reset();
    EXPECT_LT(timer.elapsed(), 400);
    store->letGo();
    EXPECT_FALSE(waitUntil([&] { return done; }, 50ms));
}

} // namespace
} // namespace pindle
