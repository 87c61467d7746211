#include "PindleMac/views/AccessibleRole.h"
#include "tests/PindleMac/shell/HelpFixture.h"

namespace pindle {
namespace {

using namespace shelltest;

const QString completed = QStringLiteral("Calendar permission check completed.");
const QString mayPrompt = QStringLiteral("macOS may show the Accessibility prompt. If it does not, "
                                         "use Open Settings and verify the installed app entry.");
const QString tip = QStringLiteral("Tip: You can change the shortcut and launch-at-login behavior "
                                   "from Settings in the menu bar context menu.");

using Help = HelpFixture;

} // namespace

TEST_F(Help, theWindowHasItsTitleItsSizeAndOneButton) {
    show();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Help"));
    EXPECT_EQ(window->size(), QSize(440, 320));
    const Qt::WindowFlags flags = window->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    window->resize(900, 900);
    EXPECT_EQ(window->size(), QSize(440, 320));
}

TEST_F(Help, everyTextIsThereInItsOrder) {
    desktop.accessibility.trusted = false;
    show();
    // In the order of the views, which is that of assistive technologies.
    QStringList texts;
    for (const QLabel *each : window->findChildren<QLabel *>()) {
        if (each->isVisibleTo(window))
            texts.append(each->text());
    }
    EXPECT_EQ(texts,
              QStringList(
                  {QStringLiteral("How to use Pindle"), QStringLiteral("1"),
                   QStringLiteral("Highlight any date or event text in any app on your Mac."),
                   QStringLiteral("2"),
                   QStringLiteral("Press your global shortcut to open the quick event panel."),
                   QStringLiteral("3"),
                   QStringLiteral("Review the prefilled event details and adjust them if needed."),
                   QStringLiteral("4"),
                   QStringLiteral("Save to Apple Calendar or open another calendar provider."),
                   QStringLiteral("Permissions"), accessibility, QStringLiteral("Not enabled"),
                   QStringLiteral("Needed so the app can read highlighted text from the currently "
                                  "focused app."),
                   calendar, QStringLiteral("Not requested"),
                   QStringLiteral("Needed only when you choose Apple Calendar, so the event can be "
                                  "created on this Mac."),
                   tip}));
    QStringList buttons;
    for (const QAbstractButton *each : shownViews<QAbstractButton>(*window))
        buttons.append(each->accessibleName());
    EXPECT_EQ(buttons, QStringList({prompt, openSettings, request, openSettings,
                                    QStringLiteral("Debug Status")}));
}

TEST_F(Help, withBothPermissionsTheCardsAndTheRowsSaySo) {
    grantAll();
    show();
    EXPECT_EQ(status(accessibility), QStringLiteral("Enabled"));
    EXPECT_EQ(status(calendar), QStringLiteral("Write only"));
    unfold();
    EXPECT_EQ(debugValues(),
              QStringList({QStringLiteral("Yes"), QStringLiteral("Write only"),
                           QStringLiteral("app.pindle.Pindle"), QStringLiteral("/opt/pindle")}));
}

TEST_F(Help, theRowsHaveTheirLabels) {
    desktop.accessibility.trusted = false;
    show();
    unfold();
    QStringList labels;
    for (const DebugRow *row : shownViews<DebugRow>(*window))
        labels.append(shownTexts(*row).value(0));
    EXPECT_EQ(labels, QStringList({QStringLiteral("Accessibility trusted"),
                                   QStringLiteral("Calendar status"), QStringLiteral("Bundle ID"),
                                   QStringLiteral("Bundle path")}));
    EXPECT_EQ(debugValues().value(0), QStringLiteral("No"));
}

TEST_F(Help, aBuildWithoutAnIdentifierSaysMissing) {
    desktop.bundle.identifier.clear();
    HelpWindowController other(desktop.platform);
    other.show();
    other.window().findChild<DisclosureHeader *>()->click();
    settle();
    EXPECT_EQ(shownViews<SelectableText>(other.window()).value(2)->toPlainText(),
              QStringLiteral("Missing"));
}

TEST_F(Help, thePromptShowsTheSystemsQuestionAndExplains) {
    desktop.accessibility.trusted = false;
    show();
    EXPECT_EQ(message(), QString());
    QTest::mouseClick(&action(accessibility, prompt), Qt::LeftButton);
    settle();
    EXPECT_EQ(desktop.accessibility.prompts, 1);
    EXPECT_EQ(message(), mayPrompt);
}

TEST_F(Help, trustGivenLaterShowsAtOnce) {
    desktop.accessibility.trusted = false;
    show();
    desktop.accessibility.trusted = true;
    desktop.accessibility.trustChanged();
    settle();
    EXPECT_EQ(status(accessibility), QStringLiteral("Enabled"));
}

TEST_F(Help, theRequestAsksAndShowsWhatCameOfIt) {
    show();
    QTest::mouseClick(&action(calendar, request), Qt::LeftButton);
    settle();
    EXPECT_EQ(desktop.eventStore.prompts, 1);
    EXPECT_EQ(message(), completed);
    EXPECT_EQ(status(calendar), QStringLiteral("Write only"));
}

TEST_F(Help, aRequestWhereAccessWasDeniedCompletesAndStaysDenied) {
    desktop.eventStore.status = EKAuthorizationStatus::denied;
    show();
    QTest::mouseClick(&action(calendar, request), Qt::LeftButton);
    settle();
    EXPECT_EQ(message(), completed);
    EXPECT_EQ(status(calendar), QStringLiteral("Denied"));
}

TEST_F(Help, anErrorOfTheRequestIsShown) {
    desktop.eventStore.accessError = PlatformError(QStringLiteral("The calendar is away."));
    show();
    action(calendar, request).click();
    settle();
    EXPECT_EQ(message(), QStringLiteral("The calendar is away."));
}

TEST_F(Help, openSettingsOpensTheCardsOwnPage) {
    show();
    QTest::mouseClick(&action(accessibility, openSettings), Qt::LeftButton);
    QTest::mouseClick(&action(calendar, openSettings), Qt::LeftButton);
    const QString page =
        QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_");
    EXPECT_EQ(desktop.workspace.opened, QStringList({page + QStringLiteral("Accessibility"),
                                                     page + QStringLiteral("Calendars")}));
    settle();
    EXPECT_EQ(message(), QString());
}

TEST_F(Help, theMessageStandsBetweenTheCardsAndTheTip) {
    show();
    action(calendar, request).click();
    settle();
    settle();
    const auto *line = window->findChild<MessageLine *>();
    EXPECT_EQ(gapDown(card(calendar), *line), 18);
    for (const QLabel *each : shownViews<QLabel>(*window)) {
        if (each->text() == tip) {
            EXPECT_EQ(gapDown(*line, *each), 18);
        }
    }
}

TEST_F(Help, aNewMessageIsBroughtIntoSight) {
    show();
    action(calendar, request).click();
    settle();
    settle();
    EXPECT_TRUE(inSight(*window, *window->findChild<MessageLine *>()));
}

TEST_F(Help, itLooksWhenItIsShownAndOnNoTimer) {
    desktop.accessibility.trusted = false;
    show();
    grantAll();
    QTest::qWait(60);
    EXPECT_EQ(status(calendar), QStringLiteral("Not requested"));
    window->close();
    show();
    EXPECT_EQ(status(calendar), QStringLiteral("Write only"));
    EXPECT_EQ(status(accessibility), QStringLiteral("Enabled"));
}

TEST_F(Help, itLooksAgainWhenTheUserComesBackToIt) {
    show();
    QLineEdit elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    grantAll();
    settle();
    EXPECT_EQ(status(calendar), QStringLiteral("Not requested"));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    settle();
    EXPECT_EQ(status(calendar), QStringLiteral("Write only"));
}

TEST_F(Help, theDebugStatusIsFoldedAtFirst) {
    show();
    EXPECT_TRUE(debugValues().isEmpty());
    unfold();
    EXPECT_EQ(debugValues().size(), 4);
    header().click();
    settle();
    EXPECT_TRUE(debugValues().isEmpty());
}

TEST_F(Help, unfoldingBringsTheRowsIntoSight) {
    show();
    unfold();
    EXPECT_TRUE(inSight(*window, *shownViews<DebugRow>(*window).last()) ||
                scrollBar(*window).value() == scrollBar(*window).maximum());
}

TEST_F(Help, closingAndOpeningKeepsTheFoldTheMessageAndThePlace) {
    show();
    action(calendar, request).click();
    unfold();
    scrollBar(*window).setValue(40);
    window->close();
    show();
    EXPECT_EQ(debugValues().size(), 4);
    EXPECT_EQ(message(), completed);
    EXPECT_EQ(scrollBar(*window).value(), 40);
    header().click();
    settle();
    window->close();
    show();
    EXPECT_TRUE(debugValues().isEmpty());
    EXPECT_EQ(message(), completed);
}

TEST_F(Help, theFoldIsWorkedByTheKeyboard) {
    show();
    DisclosureHeader &fold = header();
    fold.setFocus(Qt::TabFocusReason);
    const QList<std::pair<Qt::Key, bool>> keys{{Qt::Key_Space, true}, {Qt::Key_Return, false},
                                               {Qt::Key_Right, true}, {Qt::Key_Right, true},
                                               {Qt::Key_Left, false}, {Qt::Key_Left, false}};
    for (const auto &[key, expanded] : keys) {
        QTest::keyClick(&fold, key);
        EXPECT_EQ(fold.isExpanded(), expanded) << key;
        EXPECT_EQ(debugValues().isEmpty(), !expanded) << key;
    }
}

TEST_F(Help, theFoldTellsAssistiveTechnologiesItsState) {
    show();
    auto *fold = QAccessible::queryAccessibleInterface(&header());
    EXPECT_EQ(fold->text(QAccessible::Name), QStringLiteral("Debug Status"));
    EXPECT_EQ(fold->role(), QAccessible::PushButton);
    EXPECT_TRUE(fold->state().expandable);
    EXPECT_TRUE(fold->state().collapsed);
    EXPECT_FALSE(fold->state().expanded);
    fold->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(fold->state().expanded);
    EXPECT_FALSE(fold->state().collapsed);
    EXPECT_TRUE(header().isExpanded());
}

TEST_F(Help, aRoleGivenBehindANameIsTheRoleThatIsSeen) {
    QWidget view;
    view.setAccessibleName(accessibility);
    ASSERT_NE(QAccessible::queryAccessibleInterface(&view)->role(), QAccessible::Grouping);
    setAccessibleRole(view, QAccessible::Grouping);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->role(), QAccessible::Grouping);
}

TEST_F(Help, everyControlIsReachedWithTheTabKeyAndBroughtIntoSight) {
    show();
    unfold();
    window->activateWindow();
    QStringList reached;
    QWidget *focused = window->focusWidget();
    for (int step = 0; step < 14; ++step) {
        QTest::keyClick(focused, Qt::Key_Tab);
        settle();
        focused = window->focusWidget();
        const QString name = focused->accessibleName();
        if (reached.contains(name + focused->accessibleDescription()))
            continue;
        reached.append(name + focused->accessibleDescription());
        if (name != QStringLiteral("Help")) {
            EXPECT_TRUE(inSight(*window, *focused)) << qPrintable(name);
        }
    }
    for (const QString &each :
         {prompt + accessibility, openSettings + accessibility, request + calendar,
          openSettings + calendar, QStringLiteral("Debug Status"), QStringLiteral("Bundle ID"),
          QStringLiteral("Bundle path")})
        EXPECT_TRUE(reached.contains(each)) << qPrintable(each);
}

TEST_F(Help, pageDownScrollsFromWhereverTheKeyboardIs) {
    show();
    QTest::keyClick(&action(accessibility, prompt), Qt::Key_PageDown);
    EXPECT_GT(scrollBar(*window).value(), 0);
}

TEST_F(Help, escapeClosesTheWindowAlsoFromAValue) {
    show();
    unfold();
    QWidget *value = shownViews<SelectableText>(*window).last();
    value->setFocus();
    QTest::keyClick(value, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(Help, valuesCanBeSelectedAndCopiedButNotChanged) {
    show();
    unfold();
    auto *path = shownViews<SelectableText>(*window).last();
    path->setFocus();
    QTest::keyClick(path, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(path, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("/opt/pindle"));
    QTest::keyClick(path, Qt::Key_X);
    EXPECT_EQ(path->toPlainText(), QStringLiteral("/opt/pindle"));
    EXPECT_TRUE(path->isReadOnly());
    EXPECT_EQ(path->fontInfo().styleHint() == QFont::Monospace || path->fontInfo().fixedPitch(),
              true);
}

TEST_F(Help, aLongPathIsShownWhole) {
    show();
    unfold();
    auto *path = shownViews<SelectableText>(*window).last();
    path->setValue(QStringLiteral("/home/somebody/") + QStringLiteral("x").repeated(180));
    settle();
    settle();
    EXPECT_GE(path->height(), static_cast<int>(path->document()->size().height()));
    EXPECT_LE(path->document()->idealWidth(), path->width() + 1);
}

} // namespace pindle
