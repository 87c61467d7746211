#include "EventStoreFixture.h"
#include "PindleMac/platform/linux/eventstore/DesktopEventStore.h"
#include "ScriptedBackend.h"

namespace pindle {
namespace {

using State = BackendConnection::State;
using Outcome = BackendSave::Outcome;

/// The store's calendar and the folder, behind the one store the program knows.
struct TheUsersCalendar : CalendarFolder {
    std::shared_ptr<ScriptedStore> server = std::make_shared<ScriptedStore>();
    bool installed = true;
    DesktopEventStore own{decisions, user.ask(),
                          [this]() -> std::unique_ptr<CalendarBackend> {
                              return installed ? std::make_unique<ScriptedBackend>(server)
                                               : nullptr;
                          },
                          folder};
    QList<bool> granted;

    void request() {
        own.requestWriteOnlyAccessToEvents(
            [this](bool yes, const std::optional<PlatformError> &error) {
                EXPECT_FALSE(error);
                granted.append(yes);
            });
    }
    void open() {
        const auto count = granted.size();
        request();
        ASSERT_TRUE(waitUntil([&] { return granted.size() > count; }));
    }
    QString saveTea() {
        const auto made = own.makeEvent();
        made->setCalendar(own.defaultCalendarForNewEvents());
        made->setTitle(QStringLiteral("Tea"));
        made->setStartDate(summer);
        made->setEndDate(summer + 1h);
        made->setTimeZone({QStringLiteral("Europe/Berlin")});
        try {
            own.save(*made, EKSpan::thisEvent);
        } catch (const PlatformError &error) {
            return error.localizedDescription();
        }
        return {};
    }
};

TEST_F(TheUsersCalendar, isNotTouchedBeforeTheUserAllowedIt) {
    request();
    EXPECT_EQ(user.asked.size(), 1);
    EXPECT_FALSE(waitUntil([&] { return server->backends() > 0; }, 50ms));
    user.answer(QuestionAnswer::refused);
    ASSERT_TRUE(waitUntil([&] { return granted.size() == 1; }));
    EXPECT_EQ(granted, QList<bool>{false});
    EXPECT_EQ(server->backends(), 0);
    EXPECT_FALSE(saveTea().isEmpty());
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(TheUsersCalendar, isTheStoresWhereThereIsOneAndTheFolderStaysEmpty) {
    request();
    user.answer(QuestionAnswer::accepted);
    ASSERT_TRUE(waitUntil([&] { return granted.size() == 1; }));
    EXPECT_EQ(own.defaultCalendarForNewEvents(), (EKCalendar{QStringLiteral("cal-1")}));
    EXPECT_EQ(saveTea(), QString());
    EXPECT_EQ(server->events().size(), 1U);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(TheUsersCalendar, isTheFolderWhereThereIsNoStore) {
    installed = false;
    allow();
    open();
    EXPECT_EQ(saveTea(), QString());
    EXPECT_EQ(files().size(), 1);
}

TEST_F(TheUsersCalendar, isTheFolderWhereTheStoreHasNoCalendars) {
    server->answer = {State::absent, {}, {}, {}};
    allow();
    open();
    EXPECT_EQ(saveTea(), QString());
    EXPECT_EQ(files().size(), 1);
    EXPECT_EQ(server->saves(), 0);
}

TEST_F(TheUsersCalendar, isNeverTheFolderInPlaceOfAStoreThatFails) {
    allow();
    server->answer = {State::failed, {}, {}, "No default calendar is available."};
    open();
    EXPECT_FALSE(own.defaultCalendarForNewEvents());
    EXPECT_EQ(saveTea(), QStringLiteral("No default calendar is available."));
    server->answer = {State::connected, "cal-1", "Personal", {}};
    server->result = {Outcome::refused, "Calendar is read only"};
    open();
    EXPECT_EQ(saveTea(), QStringLiteral("Calendar is read only"));
    EXPECT_TRUE(files().isEmpty());
    server->result = {Outcome::saved, {}};
    open();
    EXPECT_EQ(saveTea(), QString());
    EXPECT_EQ(server->events().size(), 1U);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(TheUsersCalendar, isNotWrittenToBeforeItWasAskedFor) {
    allow();
    EXPECT_FALSE(saveTea().isEmpty());
    EXPECT_EQ(server->backends(), 0);
    EXPECT_TRUE(files().isEmpty());
}

} // namespace
} // namespace pindle
