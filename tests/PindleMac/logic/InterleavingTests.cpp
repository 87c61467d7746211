#include "tests/PindleMac/logic/ViewModelFixture.h"

namespace pindle {

namespace {

/// Two runs whose replies the test gives out; the first run's draft is "First", the second's
/// "Second".
struct Interleaving : ViewModelFixture {
    Interleaving() {
        registered();
        desktop.urlSession.hold = true;
        desktop.urlSession.reply = [this](const URLRequest &) {
            ++replies;
            return fake::FakeURLSession::http(
                200, reply(details(replies == 1 ? "First" : "Second", "2025-03-14")));
        };
        model->bootstrap();
        drain();
    }
    void press() {
        EXPECT_TRUE(desktop.hotKeys.press(letterE));
        drain();
    }
    void answer(std::size_t index) {
        desktop.urlSession.held.take(index)();
        drain();
    }
    int replies = 0;
};

} // namespace

TEST_F(Interleaving, twoPressesRunTwiceAndShowThePanelAtEachPointer) {
    desktop.screens.pointer = {1, 2};
    press();
    desktop.screens.pointer = {3, 4};
    press();
    ASSERT_EQ(desktop.notificationCenter.posted.size(), 2U);
    EXPECT_EQ(std::any_cast<FloatingPanelRequest>(desktop.notificationCenter.posted[0].second)
                  .screenPoint,
              QPointF(1, 2));
    EXPECT_EQ(std::any_cast<FloatingPanelRequest>(desktop.notificationCenter.posted[1].second)
                  .screenPoint,
              QPointF(3, 4));
    EXPECT_EQ(desktop.urlSession.held.count(), 2U);
    answer(0);
    answer(0);
    EXPECT_EQ(desktop.urlSession.requestsTo(QStringLiteral("text-conversion")), 2);
}

TEST_F(Interleaving, theLaterRunFinishingLastDecides) {
    press();
    press();
    answer(0);
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("First"));
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    answer(0);
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Second"));
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    EXPECT_FALSE(model->isLoading());
}

TEST_F(Interleaving, theLaterRunFinishingFirstIsOverwrittenByTheEarlier) {
    press();
    press();
    answer(1);
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Second"));
    answer(0);
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("First"));
    EXPECT_EQ(model->phase(), ParserPhase::ready);
}

TEST_F(Interleaving, aSecondPressResetsTheStateWhileTheFirstStillWaits) {
    press();
    EXPECT_EQ(model->phase(), ParserPhase::parsing);
    desktop.accessibility.holdReads = true;
    press();
    EXPECT_EQ(model->phase(), ParserPhase::capturing);
    answer(0);
    EXPECT_EQ(model->phase(), ParserPhase::ready) << "the first run finishes all the same";
    desktop.accessibility.holdReads = false;
    desktop.accessibility.held.take()();
    drain();
    EXPECT_EQ(model->phase(), ParserPhase::parsing);
    answer(0);
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Second"));
}

TEST_F(Interleaving, aFailureOfTheEarlierRunAfterTheLaterOnesSuccessIsShown) {
    desktop.urlSession.reply = [this](const URLRequest &) {
        if (++replies == 1)
            return fake::FakeURLSession::failure(QStringLiteral("The request timed out."));
        return fake::FakeURLSession::http(200, reply(details("Second", "2025-03-14")));
    };
    press();
    press();
    answer(1);
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    answer(0);
    EXPECT_EQ(model->phase(), ParserPhase::failed);
    EXPECT_EQ(model->errorMessage(), QStringLiteral("The request timed out."));
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Second"));
}

TEST_F(Interleaving, aSaveDuringACaptureSavesTheDraftOfThatMoment) {
    press();
    answer(0);
    const auto first = model->eventDetails();
    desktop.eventStore.holdAccess = true;
    model->saveEvent();
    drain();
    press(); // resets the draft while the question is still open
    EXPECT_TRUE(model->eventDetails().title.isEmpty());
    EXPECT_EQ(model->phase(), ParserPhase::parsing);
    desktop.eventStore.held.take()();
    drain();
    ASSERT_EQ(desktop.eventStore.saved.size(), 1U);
    EXPECT_EQ(desktop.eventStore.saved[0].title, first.title);
    EXPECT_EQ(model->phase(), ParserPhase::parsing) << "a save never changes the phase";
    EXPECT_FALSE(model->isLoading()) << "the save's end clears the flag of the run";
    EXPECT_TRUE(model->successMessage().has_value());
    answer(0);
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Second"));
}

TEST_F(Interleaving, editsAfterTheSaveBeganDoNotAffectIt) {
    press();
    answer(0);
    desktop.eventStore.holdAccess = true;
    model->saveEvent();
    drain();
    auto edited = model->eventDetails();
    edited.title = QStringLiteral("Edited");
    model->setEventDetails(edited);
    desktop.eventStore.held.take()();
    drain();
    EXPECT_EQ(desktop.eventStore.saved[0].title, QStringLiteral("First"));
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Edited"));
}

TEST_F(ViewModelFixture, theLaunchRegistrationRacingTheFirstConversionRegistersTwice) {
    desktop.urlSession.hold = true;
    int installs = 0;
    desktop.urlSession.reply = [&](const URLRequest &request) {
        if (!request.url.path().endsWith(QLatin1String("/on-install")))
            return fake::FakeURLSession::http(200, reply(lunchDetails));
        return fake::FakeURLSession::http(200, R"({"anonymized_key":"key-)" +
                                                   QByteArray::number(++installs) + R"("})");
    };
    model->bootstrap();
    drain();
    desktop.hotKeys.press(letterE);
    drain();
    ASSERT_EQ(desktop.urlSession.held.count(), 2U);
    desktop.urlSession.held.take(1)(); // the conversion's own registration answers first
    drain();
    ASSERT_EQ(desktop.urlSession.held.count(), 2U);
    EXPECT_TRUE(
        desktop.urlSession.requests.back().httpBody.contains(R"("anonymized_key":"key-2")"));
    desktop.urlSession.held.take(0)(); // the launch's answers last and is kept
    drain();
    EXPECT_EQ(desktop.userDefaults.values[AppPreferences::anonymizedKey].toString(),
              QStringLiteral("key-1"));
    desktop.urlSession.held.take(0)();
    drain();
    EXPECT_EQ(model->phase(), ParserPhase::ready);
}

TEST_F(ViewModelFixture, aCancelledWaitEndsTheRunWithItsDescription) {
    for (int wait : {1, 2}) {
        desktop.accessibility.attributes.clear();
        desktop.clock.cancelledSleep = wait == 1 ? 1 : 3;
        run();
        EXPECT_EQ(model->phase(), ParserPhase::failed);
        EXPECT_EQ(model->errorMessage(), QStringLiteral("The operation was cancelled."));
        EXPECT_FALSE(model->showAccessibilitySettingsAction());
    }
}

} // namespace pindle
