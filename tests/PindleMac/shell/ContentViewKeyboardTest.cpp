#include "PindleMac/ContentView.h"

#include "PindleMac/views/ErrorSection.h"
#include "PindleMac/views/MessageCard.h"
#include "tests/PindleMac/shell/ViewProbe.h"

#include <QAccessible>

namespace pindle {
namespace {

using namespace shelltest;

const QString title = QStringLiteral("Title");
const QString apple = QStringLiteral("Apple Calendar");

/// The names of the controls that Tab goes to, from the first one until it comes around.
QStringList tabOrder(ContentView &view) {
    QStringList names;
    view.setFocus();
    for (int step = 0; step < 40; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const QString name = QApplication::focusWidget()->accessibleName();
        if (names.contains(name))
            break;
        names.append(name);
    }
    return names;
}

QString accessibleText(QWidget &view, QAccessible::Text kind) {
    return QAccessible::queryAccessibleInterface(&view)->text(kind);
}

TEST(ContentViewKeyboard, tabGoesThroughTheControlsInReadingOrder) {
    ShownView shown;
    shown.shell.becomeReady();
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, true);
    settle();
    EXPECT_EQ(
        tabOrder(shown.view).join(QLatin1Char('|')).toStdString(),
        (QStringList{
             QStringLiteral("Close"), title, QStringLiteral("Start Date"),
             QStringLiteral("Start Time"), QStringLiteral("End Date"), QStringLiteral("End Time"),
             QStringLiteral("Time Zone"), QStringLiteral("Location"), QStringLiteral("Description"),
             apple, QStringLiteral("Google Calendar"), QStringLiteral("Outlook"),
             QStringLiteral("Yahoo Calendar"), QStringLiteral("Open Calendar Settings"),
             QStringLiteral("Prompt Accessibility"), QStringLiteral("Open Accessibility Settings")})
            .join(QLatin1Char('|'))
            .toStdString());
}

TEST(ContentViewKeyboard, theControlThatTabGoesToIsInSight) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    EXPECT_FALSE(inSight(shown.view, button(shown.view, apple))) << "or this tests nothing";
    tabOrder(shown.view);
    field(shown.view, title).setFocus();
    while (QApplication::focusWidget()->accessibleName() != apple)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(inSight(shown.view, button(shown.view, apple)));
    while (QApplication::focusWidget()->accessibleName() != title)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(inSight(shown.view, field(shown.view, title)));
}

TEST(ContentViewKeyboard, escapeAsksToClose) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto &posted = shown.shell.desktop.notificationCenter.posted;
    const QList<QWidget *> places{&field(shown.view, title),
                                  named<QPlainTextEdit>(shown.view, QStringLiteral("Description")),
                                  &button(shown.view, apple), &shown.view};
    for (std::size_t index = 0; index < static_cast<std::size_t>(places.size()); ++index) {
        QTest::keyClick(places[static_cast<qsizetype>(index)], Qt::Key_Escape);
        ASSERT_EQ(posted.size(), index + 1);
        EXPECT_EQ(posted[index].first, closePindlePopover);
    }
}

TEST(ContentViewKeyboard, returnInAFieldDoesNothing) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const CalendarEventDetails before = shown.model.eventDetails();
    QTest::keyClick(&field(shown.view, title), Qt::Key_Return);
    QTest::keyClick(&field(shown.view, title), Qt::Key_Enter);
    settle();
    EXPECT_EQ(shown.model.eventDetails(), before);
    EXPECT_FALSE(shown.model.isLoading());
    EXPECT_TRUE(shown.shell.desktop.notificationCenter.posted.empty());
    EXPECT_TRUE(shown.shell.desktop.workspace.opened.isEmpty());
}

TEST(ContentViewKeyboard, tabLeavesTheDescription) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto *editor = named<QPlainTextEdit>(shown.view, QStringLiteral("Description"));
    editor->setFocus();
    QTest::keyClick(editor, Qt::Key_Tab);
    EXPECT_EQ(shown.model.eventDetails().description, Shell::lunch().description);
    EXPECT_EQ(QApplication::focusWidget()->accessibleName(), apple);
}

TEST(ContentViewKeyboard, spaceReturnAndEnterPressTheFocusedTile) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &tile = button(shown.view, QStringLiteral("Google Calendar"));
    tile.setFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(&tile, key);
    EXPECT_EQ(shown.shell.desktop.workspace.opened.size(), 3);
}

TEST(ContentViewKeyboard, aHeldReturnPressesOnce) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &tile = button(shown.view, QStringLiteral("Google Calendar"));
    tile.setFocus(Qt::TabFocusReason);
    QTest::keyPress(&tile, Qt::Key_Return);
    for (int repeat = 0; repeat < 3; ++repeat) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"),
                        true);
        QApplication::sendEvent(&tile, &event);
    }
    EXPECT_EQ(shown.shell.desktop.workspace.opened.size(), 1);
}

TEST(ContentViewKeyboard, aClickOnATileLeavesTheKeyboardInTheField) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    field(shown.view, title).setFocus();
    QTest::mouseClick(&button(shown.view, QStringLiteral("Google Calendar")), Qt::LeftButton);
    EXPECT_TRUE(field(shown.view, title).hasFocus());
}

TEST(ContentViewKeyboard, theTileThatSavedHasTheKeyboardAgainAfterwards) {
    ShownView shown;
    shown.shell.desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    shown.shell.becomeReady();
    settle();
    auto &tile = button(shown.view, apple);
    tile.setFocus(Qt::TabFocusReason);
    TestAccess::setLoading(shown.model, true);
    settle();
    EXPECT_FALSE(tile.isEnabled());
    EXPECT_EQ(QApplication::focusWidget(), &shown.view) << "not some other control";
    TestAccess::setLoading(shown.model, false);
    settle();
    EXPECT_TRUE(tile.hasFocus());
}

TEST(ContentViewKeyboard, aTileDoesNotTakeTheKeyboardBackFromAField) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    button(shown.view, apple).setFocus(Qt::TabFocusReason);
    TestAccess::setLoading(shown.model, true);
    settle();
    field(shown.view, title).setFocus();
    TestAccess::setLoading(shown.model, false);
    settle();
    EXPECT_TRUE(field(shown.view, title).hasFocus());
}

TEST(ContentViewKeyboard, aFormThatGoesAwayLeavesTheKeyboardToNoOtherControl) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    field(shown.view, title).setFocus();
    TestAccess::setPhase(shown.model, ParserPhase::capturing);
    settle();
    EXPECT_EQ(QApplication::focusWidget(), &shown.view);
}

TEST(ContentViewKeyboard, anErrorThatAppearsIsScrolledIntoSightWithoutTakingTheKeyboard) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    QWidget *focusedBefore = QApplication::focusWidget();
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, false);
    settle();
    EXPECT_TRUE(inSight(shown.view, *shown.view.findChild<ErrorSection *>()));
    EXPECT_EQ(QApplication::focusWidget(), focusedBefore);
}

TEST(ContentViewKeyboard, aSuccessThatAppearsIsScrolledIntoSight) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    TestAccess::setSuccess(shown.model, QStringLiteral("Event saved to Apple Calendar."));
    settle();
    EXPECT_TRUE(inSight(shown.view, *shownViews<MessageCard>(shown.view).first()));
}

TEST(ContentViewKeyboard, aNoticeThatComesWithADraftLeavesTheDraftsBeginningInSight) {
    ShownView shown;
    shown.shell.becomeReady();
    TestAccess::setUserMessage(shown.model, QStringLiteral("A year was assumed."));
    settle();
    EXPECT_EQ(scrollBar(shown.view).value(), 0);
}

TEST(ContentViewKeyboard, aMessageNeverScrollsTheFieldBeingEditedOutOfSight) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &view = field(shown.view, QStringLiteral("Start Date"));
    view.setFocus();
    view.selectAll();
    QTest::keyClick(&view, Qt::Key_Backspace);
    settle();
    ASSERT_TRUE(shown.model.errorMessage().has_value());
    EXPECT_TRUE(inSight(shown.view, view));
}

TEST(ContentViewKeyboard, aNewDraftStartsAtItsTop) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    scrollBar(shown.view).setValue(scrollBar(shown.view).maximum());
    ASSERT_GT(scrollBar(shown.view).value(), 0);
    TestAccess::setPhase(shown.model, ParserPhase::capturing);
    settle();
    shown.shell.becomeReady();
    settle();
    EXPECT_EQ(scrollBar(shown.view).value(), 0);
}

TEST(ContentViewAccessibility, everyControlHasAName) {
    ShownView shown;
    shown.shell.becomeReady();
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, true);
    settle();
    for (QWidget *control : shownViews<QWidget>(shown.view))
        if (control->focusPolicy() != Qt::NoFocus) {
            EXPECT_FALSE(accessibleText(*control, QAccessible::Name).isEmpty())
                << control->metaObject()->className();
        }
}

TEST(ContentViewAccessibility, tilesAreNamedAndDescribedByTheirLinks) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &tile = button(shown.view, apple);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&tile)->role(), QAccessible::Button);
    EXPECT_EQ(accessibleText(tile, QAccessible::Name), apple);
    EXPECT_EQ(accessibleText(tile, QAccessible::Description),
              QStringLiteral("Save directly on this Mac"));
}

TEST(ContentViewAccessibility, fieldsAreTiedToTheirLabels) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &view = field(shown.view, title);
    const auto relations =
        QAccessible::queryAccessibleInterface(&view)->relations(QAccessible::Label);
    ASSERT_EQ(relations.size(), 1);
    EXPECT_EQ(relations[0].first->text(QAccessible::Name), title);
}

TEST(ContentViewAccessibility, messagesCanBeRead) {
    ShownView shown;
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    settle();
    auto *label = shownViews<MessageCard>(shown.view).first()->findChild<QLabel *>();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->role(), QAccessible::StaticText);
    EXPECT_EQ(accessibleText(*label, QAccessible::Name), QStringLiteral("It went wrong."));
}

TEST(ContentViewAccessibility, anAmpersandIsNoMnemonic) {
    ShownView shown;
    shown.shell.becomeReady();
    auto links = shown.model.calendarLinks();
    links[1].id = QStringLiteral("other");
    links[1].title = QStringLiteral("A &B");
    TestAccess::setLinks(shown.model, links);
    settle();
    auto &tile = button(shown.view, QStringLiteral("A &B"));
    EXPECT_TRUE(tile.shortcut().isEmpty());
    EXPECT_EQ(accessibleText(tile, QAccessible::Name), QStringLiteral("A &B"));
}

} // namespace
} // namespace pindle
