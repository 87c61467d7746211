#include "PindleMac/ContentView.h"

#include "tests/PindleMac/shell/ViewProbe.h"

namespace pindle {
namespace {

using namespace shelltest;

const QString title = QStringLiteral("Title");

TEST(ContentViewEditing, everyEditIsWrittenBackAndRefreshesTheLinks) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    int refreshed = 0;
    QObject::connect(&shown.model, &AppViewModel::objectWillChange, &shown.view,
                     [&refreshed](AppViewModel::Property property) {
                         // A draft that cannot be resolved meanwhile keeps its links and says so.
                         if (property == AppViewModel::Property::calendarLinks ||
                             property == AppViewModel::Property::errorMessage)
                             ++refreshed;
                     });
    struct Edit {
        QString title;
        QString CalendarEventDetails::*member;
    };
    using Details = CalendarEventDetails;
    const QList<Edit> edits{{title, &Details::title},
                            {QStringLiteral("Start Date"), &Details::startDate},
                            {QStringLiteral("Start Time"), &Details::startTime},
                            {QStringLiteral("End Date"), &Details::endDate},
                            {QStringLiteral("End Time"), &Details::endTime},
                            {QStringLiteral("Time Zone"), &Details::timeZone},
                            {QStringLiteral("Location"), &Details::location}};
    CalendarEventDetails expected = shown.model.eventDetails();
    for (const Edit &edit : edits) {
        auto &view = field(shown.view, edit.title);
        const QString last = view.text().right(1);
        view.end(false);
        refreshed = 0;
        QTest::keyClick(&view, Qt::Key_Backspace);
        QTest::keyClicks(&view, last);
        EXPECT_EQ(shown.model.eventDetails().*edit.member, expected.*edit.member);
        EXPECT_EQ(refreshed, 2) << edit.title.toStdString();
        QTest::keyClicks(&view, QStringLiteral(" "));
        expected.*edit.member += QLatin1Char(' ');
        EXPECT_EQ(shown.model.eventDetails(), expected) << edit.title.toStdString();
        QTest::keyClick(&view, Qt::Key_Backspace);
        (expected.*edit.member).chop(1);
        settle();
    }
}

TEST(ContentViewEditing, theLinksCarryWhatWasJustTyped) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &view = field(shown.view, title);
    view.selectAll();
    QTest::keyClicks(&view, QStringLiteral("Brunch"));
    EXPECT_TRUE(shown.model.calendarLinks()[1].url->toEncoded().contains("text=Brunch&"));
}

TEST(ContentViewEditing, theDescriptionIsWrittenBackWithItsLineBreaks) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto *editor = named<QPlainTextEdit>(shown.view, QStringLiteral("Description"));
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("one"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::keyClicks(editor, QStringLiteral("two"));
    EXPECT_EQ(shown.model.eventDetails().description, QStringLiteral("one\ntwo"));
    EXPECT_TRUE(shown.model.calendarLinks()[1].url->toEncoded().contains("details=one%0Atwo"));
}

TEST(ContentViewEditing, showingADraftIsNoEdit) {
    ShownView shown;
    auto details = Shell::lunch();
    details.title = QStringLiteral("two\nlines");
    details.description = QStringLiteral("a\r\nb\u00a0c\rd\u2028e");
    shown.shell.becomeReady(details);
    int changes = 0;
    QObject::connect(&shown.model, &AppViewModel::objectWillChange, &shown.view,
                     [&changes] { ++changes; });
    settle();
    settle();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(shown.model.eventDetails(), details);
}

TEST(ContentViewEditing, aLineBreakInATitleIsKeptAndSeenAsASpace) {
    ShownView shown;
    auto details = Shell::lunch();
    details.title = QStringLiteral("two\nlines");
    shown.shell.becomeReady(details);
    settle();
    auto &view = field(shown.view, title);
    EXPECT_EQ(view.displayText(), QStringLiteral("two lines"));
    view.end(false);
    QTest::keyClicks(&view, QStringLiteral("!"));
    EXPECT_EQ(shown.model.eventDetails().title, QStringLiteral("two\nlines!"));
}

TEST(ContentViewEditing, aNoBreakSpaceInADescriptionSurvivesAnEdit) {
    ShownView shown;
    auto details = Shell::lunch();
    details.description = QStringLiteral("10\u00a0Uhr");
    shown.shell.becomeReady(details);
    settle();
    auto *editor = named<QPlainTextEdit>(shown.view, QStringLiteral("Description"));
    editor->moveCursor(QTextCursor::End);
    QTest::keyClicks(editor, QStringLiteral("!"));
    EXPECT_EQ(shown.model.eventDetails().description, QStringLiteral("10\u00a0Uhr!"));
}

TEST(ContentViewEditing, renderingNeverMovesTheCursorOfTheFieldBeingEdited) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    auto &view = field(shown.view, title);
    view.setFocus();
    view.setCursorPosition(3);
    QTest::keyClicks(&view, QStringLiteral("abc"));
    settle();
    EXPECT_EQ(view.cursorPosition(), 6);
    EXPECT_TRUE(view.isUndoAvailable());
    TestAccess::setUserMessage(shown.model, QStringLiteral("a notice meanwhile"));
    settle();
    EXPECT_EQ(view.cursorPosition(), 6);
    EXPECT_TRUE(view.hasFocus());
}

TEST(ContentViewEditing, aVeryLongTitleIsShownWhole) {
    ShownView shown;
    auto details = Shell::lunch();
    details.title = QString(40000, QLatin1Char('x'));
    shown.shell.becomeReady(details);
    settle();
    EXPECT_EQ(field(shown.view, title).text().size(), 40000);
}

TEST(ContentViewEditing, aKeystrokeThatChangesNothingIsNoEdit) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    int changes = 0;
    QObject::connect(&shown.model, &AppViewModel::objectWillChange, &shown.view,
                     [&changes] { ++changes; });
    auto *editor = named<QPlainTextEdit>(shown.view, QStringLiteral("Description"));
    editor->document()->setDefaultFont(editor->font());
    Q_EMIT editor->textChanged();
    QTest::keyClick(&field(shown.view, title), Qt::Key_Left);
    EXPECT_EQ(changes, 0);
}

} // namespace
} // namespace pindle
