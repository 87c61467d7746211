#include "PindleMac/ContentView.h"

#include "PindleMac/views/CompactCalendarButton.h"
#include "PindleMac/views/MessageCard.h"
#include "PindleMac/views/Spinner.h"
#include "PindleMac/views/Theme.h"
#include "tests/PindleMac/shell/ViewProbe.h"

namespace pindle {
namespace {

using namespace shelltest;

const QString hint =
    QStringLiteral("Highlight text anywhere, press Command-Shift-E, then confirm the event.");
const QString apple = QStringLiteral("Apple Calendar");
const QString google = QStringLiteral("Google Calendar");
const QString title = QStringLiteral("Title");

QList<CompactCalendarButton *> tiles(const ShownView &shown) {
    return shownViews<CompactCalendarButton>(shown.view);
}

bool allTilesEnabled(const ShownView &shown, bool enabled) {
    const auto all = tiles(shown);
    return all.size() == 4 && std::ranges::all_of(all, [enabled](const auto *tile) {
               return tile->isEnabled() == enabled;
           });
}

/// The cards with a message, from top to bottom.
QStringList messages(const ShownView &shown) {
    QStringList texts;
    for (const MessageCard *card : shownViews<MessageCard>(shown.view))
        texts.append(card->text());
    return texts;
}

TEST(ContentView, idleShowsTheHeaderAndTheIdleCard) {
    const ShownView shown;
    EXPECT_EQ(shownTexts(shown.view),
              (QStringList{QStringLiteral("Pindle"), hint, QStringLiteral("Ready when you are"),
                           QStringLiteral("Use the global shortcut to capture your current "
                                          "selection and open a prefilled event here."),
                           QStringLiteral("Command + Shift + E")}));
}

TEST(ContentView, theHintNamesTheSameKeysWhateverLetterIsChosen) {
    ShownView shown;
    shown.model.updateShortcutKey(ShortcutKey::p);
    settle();
    EXPECT_TRUE(shownTexts(shown.view).contains(hint));
    EXPECT_TRUE(shownTexts(shown.view).contains(QStringLiteral("Command + Shift + E")));
}

TEST(ContentView, capturingShowsTheLoadingCard) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::capturing);
    settle();
    EXPECT_EQ(
        shownTexts(shown.view),
        (QStringList{QStringLiteral("Pindle"), hint, QStringLiteral("Capturing your selection"),
                     QStringLiteral("Reading the highlighted text from the active app.")}));
}

TEST(ContentView, parsingShowsTheLoadingCardWithItsOwnTexts) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::parsing);
    settle();
    EXPECT_EQ(
        shownTexts(shown.view),
        (QStringList{QStringLiteral("Pindle"), hint, QStringLiteral("Turning text into an event"),
                     QStringLiteral("AI is parsing the text and filling the event details.")}));
}

TEST(ContentView, theSpinnerTurnsOnlyWhileItIsSeen) {
    ShownView shown;
    auto *spinner = shown.view.findChild<Spinner *>();
    EXPECT_FALSE(spinner->isTurning());
    TestAccess::setPhase(shown.model, ParserPhase::capturing);
    settle();
    EXPECT_TRUE(spinner->isTurning());
    shown.view.hide();
    EXPECT_FALSE(spinner->isTurning()) << "the panel is hidden";
    shown.view.show();
    EXPECT_TRUE(spinner->isTurning());
    shown.shell.becomeReady();
    settle();
    EXPECT_FALSE(spinner->isTurning());
}

TEST(ContentView, readyShowsTheFormAndTheDestinations) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    QStringList texts = shownTexts(shown.view).mid(2);
    EXPECT_EQ(texts,
              (QStringList{QStringLiteral("Event Details"), title, QStringLiteral("Start Date"),
                           QStringLiteral("Start Time"), QStringLiteral("End Date"),
                           QStringLiteral("End Time"), QStringLiteral("Time Zone"),
                           QStringLiteral("Location"), QStringLiteral("Description"),
                           QStringLiteral("Add To Calendar")}));
    const CalendarEventDetails lunch = Shell::lunch();
    EXPECT_EQ(field(shown.view, title).text(), lunch.title);
    EXPECT_EQ(field(shown.view, QStringLiteral("Start Date")).text(), lunch.startDate);
    EXPECT_EQ(field(shown.view, QStringLiteral("Start Time")).text(), lunch.startTime);
    EXPECT_EQ(field(shown.view, QStringLiteral("End Date")).text(), lunch.endDate);
    EXPECT_EQ(field(shown.view, QStringLiteral("End Time")).text(), lunch.endTime);
    EXPECT_EQ(field(shown.view, QStringLiteral("Time Zone")).text(), lunch.timeZone);
    EXPECT_EQ(field(shown.view, QStringLiteral("Location")).text(), lunch.location);
    EXPECT_EQ(named<QPlainTextEdit>(shown.view, QStringLiteral("Description"))->toPlainText(),
              lunch.description);
    QStringList tileTitles;
    for (const auto *tile : tiles(shown))
        tileTitles.append(tile->shortTitle());
    EXPECT_EQ(tileTitles, (QStringList{QStringLiteral("Apple"), QStringLiteral("GCal"),
                                       QStringLiteral("Outlook"), QStringLiteral("Yahoo")}));
}

TEST(ContentView, aFailedRunShowsTheIdleCardAndThenTheRedMessage) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::failed);
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    settle();
    EXPECT_EQ(shownTexts(shown.view).mid(2, 1), QStringList{QStringLiteral("Ready when you are")});
    EXPECT_EQ(shownTexts(shown.view).last(), QStringLiteral("It went wrong."));
    EXPECT_TRUE(shownViews<QLineEdit>(shown.view).isEmpty());
}

TEST(ContentView, withoutATitleTheTilesAreDisabledUntilOneCharacterIsTyped) {
    ShownView shown;
    auto details = Shell::lunch();
    details.title.clear();
    shown.shell.becomeReady(details);
    settle();
    EXPECT_TRUE(allTilesEnabled(shown, false));
    QTest::keyClicks(&field(shown.view, title), QStringLiteral("x"));
    settle();
    EXPECT_TRUE(allTilesEnabled(shown, true));
}

TEST(ContentView, aTitleOfSpacesCountsAsFilled) {
    ShownView shown;
    auto details = Shell::lunch();
    details.title = QStringLiteral("  ");
    shown.shell.becomeReady(details);
    settle();
    EXPECT_TRUE(allTilesEnabled(shown, true));
}

TEST(ContentView, withoutAStartDateTheTilesAreDisabled) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &date = field(shown.view, QStringLiteral("Start Date"));
    date.selectAll();
    QTest::keyClick(&date, Qt::Key_Backspace);
    settle();
    EXPECT_TRUE(allTilesEnabled(shown, false));
    EXPECT_EQ(messages(shown),
              QStringList{AppError(AppError::Case::invalidDates).errorDescription()});
}

TEST(ContentView, whileSomethingIsLoadingTheTilesAreDisabled) {
    ShownView shown;
    shown.shell.becomeReady();
    TestAccess::setLoading(shown.model, true);
    settle();
    EXPECT_TRUE(allTilesEnabled(shown, false));
    TestAccess::setLoading(shown.model, false);
    settle();
    EXPECT_TRUE(allTilesEnabled(shown, true));
}

TEST(ContentView, bothOffersAreThreeButtonsInOneRow) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::failed);
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, true);
    settle();
    QList<const QAbstractButton *> row;
    for (const QString &name :
         {QStringLiteral("Open Calendar Settings"), QStringLiteral("Prompt Accessibility"),
          QStringLiteral("Open Accessibility Settings")})
        row.append(&button(shown.view, name));
    const auto left = [&shown](const QWidget *view) {
        return view->mapTo(&shown.view, QPoint()).x();
    };
    const auto middle = [&shown](const QWidget *view) {
        return view->mapTo(&shown.view, view->rect().center()).y();
    };
    EXPECT_LE(left(row[0]) + row[0]->width() + 10, left(row[1]));
    EXPECT_LE(left(row[1]) + row[1]->width() + 10, left(row[2]));
    EXPECT_LE(left(row[2]) + row[2]->width(), ContentView::panelWidth - 18);
    EXPECT_NEAR(middle(row[0]), middle(row[1]), 1);
    EXPECT_NEAR(middle(row[1]), middle(row[2]), 1);
}

TEST(ContentView, eachOfferStandsAlone) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::failed);
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    const auto offered = [&shown] {
        QStringList names;
        for (const auto *view : shownViews<QAbstractButton>(shown.view).mid(1))
            names.append(view->accessibleName());
        return names;
    };
    settle();
    EXPECT_EQ(offered(), QStringList());
    TestAccess::setOffers(shown.model, true, false);
    settle();
    EXPECT_EQ(offered(), QStringList{QStringLiteral("Open Calendar Settings")});
    TestAccess::setOffers(shown.model, false, true);
    settle();
    EXPECT_EQ(offered(), (QStringList{QStringLiteral("Prompt Accessibility"),
                                      QStringLiteral("Open Accessibility Settings")}));
}

TEST(ContentView, offersWithoutAnErrorAreNotShown) {
    ShownView shown;
    TestAccess::setOffers(shown.model, true, true);
    settle();
    EXPECT_EQ(shownViews<QAbstractButton>(shown.view).size(), 1) << "the close button only";
}

TEST(ContentView, offersDoWhatTheySay) {
    ShownView shown;
    shown.shell.desktop.accessibility.trusted = false;
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, true);
    settle();
    const auto click = [&shown](const QString &name) {
        QTest::mouseClick(&button(shown.view, name), Qt::LeftButton);
    };
    click(QStringLiteral("Prompt Accessibility"));
    EXPECT_EQ(shown.shell.desktop.accessibility.prompts, 1);
    EXPECT_TRUE(shown.shell.desktop.workspace.opened.isEmpty());
    click(QStringLiteral("Open Calendar Settings"));
    ASSERT_EQ(shown.shell.desktop.workspace.opened.size(), 1);
    EXPECT_TRUE(shown.shell.desktop.workspace.opened[0].contains(QStringLiteral("Calendars")));
    click(QStringLiteral("Open Accessibility Settings"));
    ASSERT_EQ(shown.shell.desktop.workspace.opened.size(), 2);
    EXPECT_TRUE(shown.shell.desktop.workspace.opened[1].contains(QStringLiteral("Accessibility")));
}

TEST(ContentView, anErrorASuccessAndANoticeAreStackedInThatOrder) {
    ShownView shown;
    TestAccess::setUserMessage(shown.model, QStringLiteral("third"));
    TestAccess::setSuccess(shown.model, QStringLiteral("second"));
    TestAccess::setError(shown.model, QStringLiteral("first"));
    settle();
    EXPECT_EQ(messages(shown), (QStringList{QStringLiteral("first"), QStringLiteral("second"),
                                            QStringLiteral("third")}));
}

TEST(ContentView, eachMessageGoesWhenItsStateGoes) {
    ShownView shown;
    TestAccess::setUserMessage(shown.model, QStringLiteral("third"));
    TestAccess::setSuccess(shown.model, QStringLiteral("second"));
    TestAccess::setError(shown.model, QStringLiteral("first"));
    settle();
    TestAccess::setSuccess(shown.model, std::nullopt);
    settle();
    EXPECT_EQ(messages(shown), (QStringList{QStringLiteral("first"), QStringLiteral("third")}));
    TestAccess::setError(shown.model, std::nullopt);
    TestAccess::setUserMessage(shown.model, {});
    settle();
    EXPECT_EQ(messages(shown), QStringList());
}

TEST(ContentView, theSystemCalendarsTileSaves) {
    ShownView shown;
    shown.shell.desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    shown.shell.becomeReady();
    settle();
    QTest::mouseClick(&button(shown.view, apple), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&shown] { return shown.model.successMessage().has_value(); }));
    EXPECT_EQ(shown.shell.desktop.eventStore.saved.size(), 1U);
    settle();
    EXPECT_EQ(messages(shown), QStringList{QStringLiteral("Event saved to Apple Calendar.")});
    EXPECT_TRUE(shown.shell.desktop.workspace.opened.isEmpty());
}

TEST(ContentView, aDoubleClickOnATileSavesOnce) {
    ShownView shown;
    shown.shell.desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    shown.shell.becomeReady();
    settle();
    QWidget *tile = &button(shown.view, apple);
    const QPoint place = tile->rect().center();
    QTest::mouseClick(tile, Qt::LeftButton, {}, place);
    ASSERT_TRUE(QTest::qWaitFor([&shown] { return shown.model.successMessage().has_value(); }));
    settle();
    QMouseEvent second(QEvent::MouseButtonDblClick, QPointF(place),
                       QPointF(tile->mapToGlobal(place)), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(tile, &second);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(place),
                        QPointF(tile->mapToGlobal(place)), Qt::LeftButton, Qt::NoButton, {});
    QApplication::sendEvent(tile, &release);
    QTest::qWait(20);
    EXPECT_EQ(shown.shell.desktop.eventStore.saved.size(), 1U);
}

TEST(ContentView, aWebCalendarsTileOpensItsLink) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    QTest::mouseClick(&button(shown.view, google), Qt::LeftButton);
    ASSERT_EQ(shown.shell.desktop.workspace.opened.size(), 1);
    EXPECT_TRUE(shown.shell.desktop.workspace.opened[0].startsWith(
        QStringLiteral("https://calendar.google.com/")));
    EXPECT_TRUE(shown.shell.desktop.eventStore.saved.empty());
}

TEST(ContentView, aClickBeforeTheTilesShowThatSomethingIsLoadingDoesNothing) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    TestAccess::setLoading(shown.model, true);
    QTest::mouseClick(&button(shown.view, google), Qt::LeftButton);
    EXPECT_TRUE(shown.shell.desktop.workspace.opened.isEmpty());
}

TEST(ContentView, anUnknownDestinationShowsItsFullTitleAndTheAccentColour) {
    ShownView shown;
    shown.shell.becomeReady();
    auto links = shown.model.calendarLinks();
    links[2].id = QStringLiteral("other");
    links[2].title = QStringLiteral("Some & Other Calendar");
    TestAccess::setLinks(shown.model, links);
    settle();
    const CompactCalendarButton *tile = tiles(shown)[2];
    EXPECT_EQ(tile->iconName(), QStringLiteral("calendar.badge.plus"));
    EXPECT_EQ(tile->iconTint(), theme::accent());
    EXPECT_EQ(tile->shortTitle(), QStringLiteral("Some & Other Calendar"));
}

TEST(ContentView, knownDestinationsHaveTheirSymbolsAndColours) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto all = tiles(shown);
    const QStringList icons{QStringLiteral("apple.logo"), QStringLiteral("globe"),
                            QStringLiteral("envelope.badge"), QStringLiteral("calendar")};
    const QList<QColor> tints{theme::symbolGreen(), theme::symbolBlue(), theme::symbolIndigo(),
                              theme::symbolOrange()};
    for (qsizetype index = 0; index < 4; ++index) {
        EXPECT_EQ(all[index]->iconName(), icons[index]);
        EXPECT_EQ(all[index]->iconTint(), tints[index]);
    }
}

TEST(ContentView, theTilesShareTheRowEqually) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto all = tiles(shown);
    for (const auto *tile : all) {
        EXPECT_NEAR(tile->width(), all[0]->width(), 1);
        EXPECT_EQ(tile->height(), all[0]->height());
        EXPECT_GE(tile->height(), 78);
    }
    EXPECT_EQ(all[1]->x() - all[0]->geometry().right() - 1, 8);
}

TEST(ContentView, theCloseButtonPostsTheRequest) {
    ShownView shown;
    QTest::mouseClick(&button(shown.view, QStringLiteral("Close")), Qt::LeftButton);
    ASSERT_EQ(shown.shell.desktop.notificationCenter.posted.size(), 1U);
    EXPECT_EQ(shown.shell.desktop.notificationCenter.posted[0].first, closePindlePopover);
    EXPECT_FALSE(shown.shell.desktop.notificationCenter.posted[0].second.has_value());
}

TEST(ContentView, manyChangesInOneTurnCostOneRender) {
    ShownView shown;
    shown.shell.becomeReady();
    EXPECT_EQ(tiles(shown).size(), 0) << "nothing is rendered before the next turn";
    settle();
    EXPECT_EQ(tiles(shown).size(), 4);
}

TEST(ContentView, pendingChangesCanBeRenderedAtOnce) {
    ShownView shown;
    shown.shell.becomeReady();
    shown.view.renderPendingChanges();
    EXPECT_EQ(tiles(shown).size(), 4);
}

TEST(ContentView, aHiddenViewShowsTheStateOfNowWhenItReturns) {
    ShownView shown;
    shown.view.hide();
    shown.shell.becomeReady();
    settle();
    shown.view.show();
    EXPECT_EQ(tiles(shown).size(), 4);
    EXPECT_EQ(field(shown.view, title).text(), Shell::lunch().title);
}

TEST(ContentView, foreignTextIsPlainText) {
    ShownView shown;
    const QString markup = QStringLiteral("<b>bold</b> <a href=\"https://x.example\">&amp;</a>");
    TestAccess::setError(shown.model, markup);
    TestAccess::setUserMessage(shown.model, markup);
    settle();
    for (const QLabel *label : shownViews<QLabel>(shown.view)) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(label->textInteractionFlags() & Qt::LinksAccessibleByMouse, 0);
    }
    EXPECT_EQ(messages(shown), (QStringList{markup, markup}));
}

} // namespace
} // namespace pindle
