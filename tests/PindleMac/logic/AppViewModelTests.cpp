#include "tests/PindleMac/logic/ViewModelFixture.h"

namespace pindle {

namespace {

struct ViewModel : ViewModelFixture {};

const QList<AppViewModel::Property> runStart = {
    AppViewModel::Property::phase,
    AppViewModel::Property::isLoading,
    AppViewModel::Property::successMessage,
    AppViewModel::Property::errorMessage,
    AppViewModel::Property::showCalendarSettingsAction,
    AppViewModel::Property::showAccessibilitySettingsAction,
    AppViewModel::Property::userMessage,
    AppViewModel::Property::calendarLinks,
    AppViewModel::Property::eventDetails,
};

CalendarEventDetails emptyDraft() {
    CalendarEventDetails details;
    details.timeZone = QStringLiteral("Europe/Berlin");
    return details;
}

} // namespace

TEST_F(ViewModel, startsIdleWithAnEmptyDraftInTheMachinesZone) {
    EXPECT_EQ(model->phase(), ParserPhase::idle);
    EXPECT_EQ(model->eventDetails(), emptyDraft());
    EXPECT_FALSE(model->isLoading());
    EXPECT_FALSE(model->errorMessage() || model->successMessage());
    EXPECT_TRUE(model->userMessage().isEmpty());
    EXPECT_TRUE(model->calendarLinks().isEmpty());
    EXPECT_FALSE(model->showCalendarSettingsAction());
    EXPECT_FALSE(model->showAccessibilitySettingsAction());
}

TEST_F(ViewModel, aRunAssignsItsStateInOrder) {
    run();
    EXPECT_EQ(changes,
              runStart + QList({Property::phase, Property::eventDetails, Property::calendarLinks,
                                Property::userMessage, Property::phase, Property::isLoading}));
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    EXPECT_FALSE(model->isLoading());
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Lunch"));
    EXPECT_EQ(model->calendarLinks().size(), 4);
}

TEST_F(ViewModel, aRunCapturesThenRegistersThenConverts) {
    run();
    EXPECT_EQ(
        desktop.logged({QStringLiteral("ax"), QStringLiteral("http"), QStringLiteral("defaults")}),
        QStringList({QStringLiteral("ax systemwide"),
                     QStringLiteral("ax read AXFocusedUIElement of 1"),
                     QStringLiteral("ax read AXSelectedText of 7"),
                     QStringLiteral("http /functions/v1/on-install"),
                     QStringLiteral("defaults set anonymized_key=key-1"),
                     QStringLiteral("http /functions/v1/text-conversion")}));
}

TEST_F(ViewModel, nothingOfATaskRunsInTheCallersFrame) {
    model->captureAndConvertSelection();
    model->saveEvent();
    model->openBugReport();
    EXPECT_TRUE(desktop.log.isEmpty());
    EXPECT_TRUE(changes.isEmpty());
    drain();
    EXPECT_FALSE(changes.isEmpty());
}

TEST_F(ViewModel, changesAreAnnouncedBeforeTheyLandAlsoForEqualValues) {
    QList<ParserPhase> before;
    QObject::connect(model.get(), &AppViewModel::objectWillChange, model.get(),
                     [&](Property property) {
                         if (property == Property::phase)
                             before += model->phase();
                     });
    run();
    EXPECT_EQ(before, QList({ParserPhase::idle, ParserPhase::capturing, ParserPhase::parsing}));
    changes.clear();
    model->setEventDetails(model->eventDetails());
    EXPECT_EQ(changes, QList({Property::eventDetails}));
}

TEST_F(ViewModel, theTrimmedTextIsSent) {
    run();
    EXPECT_TRUE(
        desktop.urlSession.requests.back().httpBody.contains(R"("text":"Lunch Friday at noon")"));
}

TEST_F(ViewModel, aSelectionOfBlanksFailsWithTheAccessibilityOffer) {
    desktop.accessibility.select(QStringLiteral(" \n \t"));
    run();
    EXPECT_EQ(model->phase(), ParserPhase::failed);
    EXPECT_EQ(model->errorMessage(), AppError(AppError::Case::missingSelection).errorDescription());
    EXPECT_TRUE(model->showAccessibilitySettingsAction());
    EXPECT_FALSE(model->showCalendarSettingsAction());
    EXPECT_FALSE(model->isLoading());
    EXPECT_TRUE(desktop.urlSession.requests.empty());
}

TEST_F(ViewModel, aFailureAssignsItsStateInOrder) {
    desktop.accessibility.attributes.clear();
    run();
    EXPECT_EQ(changes,
              runStart + QList({Property::phase, Property::errorMessage,
                                Property::showAccessibilitySettingsAction, Property::isLoading}));
}

TEST_F(ViewModel, aServiceFailureOffersNoSettings) {
    desktop.urlSession.reply = [](const URLRequest &) {
        return fake::FakeURLSession::failure(QStringLiteral("The request timed out."));
    };
    run();
    EXPECT_EQ(model->phase(), ParserPhase::failed);
    EXPECT_EQ(model->errorMessage(), QStringLiteral("The request timed out."));
    EXPECT_FALSE(model->showAccessibilitySettingsAction());
    EXPECT_EQ(model->eventDetails(), emptyDraft());
}

TEST_F(ViewModel, aReplyWithoutDetailsIsReadyWithAnEmptyDraftAndTheNotice) {
    desktop.urlSession.convertsTo({}, "Nothing to enter.");
    run();
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    EXPECT_EQ(model->eventDetails(), emptyDraft());
    EXPECT_TRUE(model->calendarLinks().isEmpty());
    EXPECT_EQ(model->userMessage(), QStringLiteral("Nothing to enter."));
}

TEST_F(ViewModel, aReplyWithoutNoticeHasAnEmptyOne) {
    run();
    EXPECT_EQ(model->userMessage(), QString());
}

TEST_F(ViewModel, aReplyWhoseDatesDoNotResolveFailsWithItsDraft) {
    desktop.urlSession.convertsTo(details("Lunch", "soon"), "A notice");
    run();
    EXPECT_EQ(model->phase(), ParserPhase::failed);
    EXPECT_EQ(model->errorMessage(), AppError(AppError::Case::invalidDates).errorDescription());
    EXPECT_EQ(model->eventDetails().title, QStringLiteral("Lunch"));
    EXPECT_TRUE(model->calendarLinks().isEmpty());
    EXPECT_EQ(model->userMessage(), QString());
    EXPECT_FALSE(model->showAccessibilitySettingsAction());
    EXPECT_FALSE(model->isLoading());
}

TEST_F(ViewModel, aNewDraftTakesTheZoneOfTheMoment) {
    desktop.clock.zone = {QStringLiteral("Asia/Tokyo")};
    desktop.accessibility.attributes.clear();
    run();
    EXPECT_EQ(model->eventDetails().timeZone, QStringLiteral("Asia/Tokyo"));
}

TEST_F(ViewModel, bootstrapRegistersInTheBackgroundAndBindsTheShortcutAtOnce) {
    model->bootstrap();
    EXPECT_EQ(desktop.log.front(),
              QStringLiteral("hotkey register 14 0x300 0x504e444c/1 options=0"));
    EXPECT_TRUE(desktop.urlSession.requests.empty());
    drain();
    EXPECT_EQ(desktop.urlSession.requestsTo(QStringLiteral("on-install")), 1);
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(ViewModel, aSecondBootstrapDoesNothing) {
    model->bootstrap();
    drain();
    const auto log = desktop.log;
    desktop.userDefaults.values.clear();
    model->bootstrap();
    drain();
    EXPECT_EQ(desktop.log, log);
}

TEST_F(ViewModel, aFailedLaunchRegistrationSetsTheMessageAndNothingElse) {
    desktop.urlSession.reply = [](const URLRequest &) {
        return fake::FakeURLSession::failure(QStringLiteral("offline"));
    };
    model->bootstrap();
    drain();
    EXPECT_EQ(changes, QList({Property::errorMessage}));
    EXPECT_EQ(model->errorMessage(), QStringLiteral("offline"));
    EXPECT_EQ(model->phase(), ParserPhase::idle);
    EXPECT_FALSE(model->isLoading());
    desktop.urlSession.reply = nullptr;
    EXPECT_TRUE(desktop.hotKeys.press(letterE));
    drain();
    EXPECT_FALSE(model->errorMessage().has_value());
    EXPECT_EQ(model->phase(), ParserPhase::ready);
}

TEST_F(ViewModel, aPressAsksForThePanelAtThePointerBeforeItCaptures) {
    registered();
    model->bootstrap();
    drain();
    desktop.log.clear();
    desktop.screens.pointer = {321, 654};
    EXPECT_TRUE(desktop.hotKeys.press(letterE));
    EXPECT_TRUE(desktop.log.isEmpty()) << "the handler only schedules";
    drain();
    EXPECT_EQ(desktop.log, QStringList({QStringLiteral("mouse location"),
                                        QStringLiteral("post showPindlePopover"),
                                        QStringLiteral("ax systemwide"),
                                        QStringLiteral("ax read AXFocusedUIElement of 1"),
                                        QStringLiteral("ax read AXSelectedText of 7"),
                                        QStringLiteral("http /functions/v1/text-conversion")}));
    const auto &[name, object] = desktop.notificationCenter.posted.front();
    EXPECT_EQ(name, showPindlePopover);
    EXPECT_EQ(std::any_cast<FloatingPanelRequest>(object).screenPoint, QPointF(321, 654));
}

TEST_F(ViewModel, aPressAfterTheModelIsGoneStillShowsThePanelAndCapturesNothing) {
    model->bootstrap();
    drain();
    desktop.log.clear();
    model.reset();
    desktop.hotKeys.press(letterE);
    drain();
    EXPECT_EQ(desktop.log, QStringList({QStringLiteral("mouse location"),
                                        QStringLiteral("post showPindlePopover")}));
}

TEST_F(ViewModel, aNewLetterIsStoredThenBound) {
    model->bootstrap();
    drain();
    desktop.log.clear();
    model->updateShortcutKey(ShortcutKey::k);
    EXPECT_EQ(desktop.log,
              QStringList({QStringLiteral("defaults set shortcut_key=k"),
                           QStringLiteral("hotkey unregister 14"),
                           QStringLiteral("hotkey register 40 0x300 0x504e444c/1 options=0")}));
    EXPECT_FALSE(desktop.hotKeys.press(letterE));
    EXPECT_TRUE(desktop.hotKeys.press(40));
    drain();
    EXPECT_EQ(model->phase(), ParserPhase::ready);
}

TEST_F(ViewModel, aSaveAssignsItsStateInOrderAndConfirms) {
    run();
    changes.clear();
    model->saveEvent();
    drain();
    EXPECT_EQ(changes, QList({Property::isLoading, Property::successMessage, Property::errorMessage,
                              Property::showCalendarSettingsAction,
                              Property::showAccessibilitySettingsAction, Property::successMessage,
                              Property::isLoading}));
    EXPECT_EQ(model->successMessage(), QStringLiteral("Event saved to Apple Calendar."));
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    EXPECT_EQ(model->calendarLinks().size(), 4);
    EXPECT_EQ(desktop.eventStore.saved.size(), 1U);
    model->saveEvent();
    drain();
    EXPECT_EQ(desktop.eventStore.saved.size(), 2U);
}

TEST_F(ViewModel, aDeniedSaveKeepsTheDraftAndOffersTheCalendarSettings) {
    run();
    const auto kept = model->eventDetails();
    desktop.eventStore.userAllows = false;
    changes.clear();
    model->saveEvent();
    drain();
    EXPECT_EQ(changes.mid(5), QList({Property::errorMessage, Property::showCalendarSettingsAction,
                                     Property::isLoading}));
    EXPECT_EQ(model->phase(), ParserPhase::ready);
    EXPECT_EQ(model->eventDetails(), kept);
    EXPECT_TRUE(model->showCalendarSettingsAction());
    EXPECT_FALSE(model->showAccessibilitySettingsAction());
    EXPECT_FALSE(model->isLoading());
}

TEST_F(ViewModel, aSaveThatFailsOtherwiseOffersNothing) {
    run();
    desktop.eventStore.saveError = PlatformError(QStringLiteral("The calendar is read-only."));
    model->saveEvent();
    drain();
    EXPECT_EQ(model->errorMessage(), QStringLiteral("The calendar is read-only."));
    EXPECT_FALSE(model->showCalendarSettingsAction());
    EXPECT_EQ(model->phase(), ParserPhase::ready);
}

TEST_F(ViewModel, aNewCaptureClearsTheConfirmationAtOnce) {
    run();
    model->saveEvent();
    drain();
    ASSERT_TRUE(model->successMessage().has_value());
    desktop.accessibility.holdReads = true;
    run();
    EXPECT_EQ(model->phase(), ParserPhase::capturing);
    EXPECT_FALSE(model->successMessage().has_value());
    desktop.accessibility.holdReads = false;
    desktop.accessibility.held.take()();
    drain();
}

TEST_F(ViewModel, editsRebuildTheLinks) {
    run();
    auto details = model->eventDetails();
    details.title = QStringLiteral("Dinner");
    model->setEventDetails(details);
    changes.clear();
    model->refreshCalendarLinks();
    EXPECT_EQ(changes, QList({Property::calendarLinks}));
    EXPECT_TRUE(model->calendarLinks()[1].url->toString().contains(QStringLiteral("text=Dinner")));
}

TEST_F(ViewModel, linksThatCannotBeBuiltKeepTheOldOnesAndSetTheMessage) {
    run();
    const auto links = model->calendarLinks();
    auto details = model->eventDetails();
    details.startDate = QStringLiteral("2025-03-");
    model->setEventDetails(details);
    changes.clear();
    model->refreshCalendarLinks();
    EXPECT_EQ(changes, QList({Property::errorMessage}));
    EXPECT_EQ(model->calendarLinks(), links);
    EXPECT_EQ(model->phase(), ParserPhase::ready);
}

TEST_F(ViewModel, aBugReportThatFailsSetsTheMessageOnly) {
    desktop.urlSession.reply = [](const URLRequest &) {
        return fake::FakeURLSession::failure(QStringLiteral("offline"));
    };
    model->openBugReport();
    drain();
    EXPECT_EQ(changes, QList({Property::errorMessage}));
    EXPECT_FALSE(model->isLoading());
    EXPECT_TRUE(desktop.workspace.opened.isEmpty());
}

TEST_F(ViewModel, theRestIsForwardedToTheServices) {
    run();
    desktop.log.clear();
    model->openCalendarLink(model->calendarLinks()[3]);
    model->openURL(AppLinkDestination::about());
    model->openCalendarSettings();
    model->openAccessibilitySettings();
    model->promptAccessibilityPermission();
    model->openBugReport();
    drain();
    ASSERT_EQ(desktop.log.size(), 6);
    EXPECT_TRUE(desktop.log[0].startsWith(QStringLiteral("workspace open https://calendar.yahoo")));
    EXPECT_TRUE(desktop.log[1].contains(AppLinkDestination::about().host()));
    EXPECT_TRUE(desktop.log[2].endsWith(QStringLiteral("Privacy_Calendars")));
    EXPECT_TRUE(desktop.log[3].endsWith(QStringLiteral("Privacy_Accessibility")));
    EXPECT_EQ(desktop.log[4], QStringLiteral("ax trusted prompt=1"));
    EXPECT_TRUE(desktop.log[5].endsWith(QStringLiteral("reason=bug&anonymized_key=key-1")));
}

} // namespace pindle
