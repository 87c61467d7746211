#include "PindleMac/SettingsView.h"
#include "PindleMac/SettingsWindowController.h"
#include "PindleMac/views/ShortcutPicker.h"
#include "PindleMac/views/SwitchControl.h"
#include "PindleMac/views/TitledWindow.h"
#include "PindleMac/views/WindowTheme.h"
#include "tests/PindleMac/shell/PartPicture.h"
#include "tests/PindleMac/shell/ViewProbe.h"
#include "tests/PindleMac/shell/WindowPalettes.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QScreen>
#include <QWheelEvent>

namespace pindle {
namespace {

using namespace shelltest;

const QString refusal = QStringLiteral("Launch at login could not be updated on this build.");

struct Settings : ::testing::Test {
    Shell shell;
    AppSettingsStore &store = *shell.settings;
    SettingsWindowController controller{*shell.model};
    TitledWindow &window = controller.window();
    SwitchControl &launchAtLogin = *window.findChild<SwitchControl *>();
    ShortcutPicker &picker = *window.findChild<ShortcutPicker *>();

    void show() {
        controller.show();
        settle();
    }
    QLabel &label(const QString &text) const {
        for (QLabel *label : shownViews<QLabel>(window)) {
            if (label->text() == text)
                return *label;
        }
        qFatal("no label %s", qPrintable(text));
    }
    /// Chooses a row as a click in the open menu does.
    void choose(ShortcutKey key) {
        const int row = static_cast<int>(key);
        picker.setCurrentIndex(row);
        Q_EMIT picker.activated(row);
    }
};

} // namespace

TEST_F(Settings, makesTheWindowWithoutShowingIt) {
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Settings"));
    show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.size(), QSize(420, 280));
}

TEST_F(Settings, theWindowHasATitleCanBeClosedAndMinimizedButNotResized) {
    const Qt::WindowFlags flags = window.windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    show();
    window.resize(800, 600);
    EXPECT_EQ(window.size(), QSize(420, 280));
}

TEST_F(Settings, theWindowOpensInTheMiddleOfTheScreen) {
    show();
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    // Give or take half a frame, whose size is not known before.
    EXPECT_LE((window.geometry().center() - middle).manhattanLength(), 8);
}

TEST_F(Settings, openingTwiceShowsTheSameWindowWhereItWas) {
    const auto windows = QApplication::topLevelWidgets().size();
    show();
    window.move(30, 40);
    window.close();
    EXPECT_FALSE(window.isVisible());
    show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.pos(), QPoint(30, 40));
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
}

TEST_F(Settings, showBringsTheWindowToTheFrontEachTime) {
    show();
    show();
    EXPECT_EQ(shell.desktop.windowServer.activated,
              (QList<quintptr>{window.winId(), window.winId()}));
}

TEST_F(Settings, aMinimizedWindowComesBack) {
    show();
    window.showMinimized();
    settle();
    show();
    EXPECT_FALSE(window.isMinimized());
}

TEST_F(Settings, closingTheWindowDoesNotEndTheProgram) {
    EXPECT_FALSE(window.testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(Settings, withNothingStoredTheSwitchIsOffAndTheLetterIsE) {
    show();
    EXPECT_FALSE(launchAtLogin.isChecked());
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + E"));
    EXPECT_EQ(shownTexts(window),
              QStringList({QStringLiteral("Settings"),
                           QStringLiteral("Choose how Pindle should behave in the background."),
                           QStringLiteral("Shortcut key"),
                           QStringLiteral("Current shortcut: Command + Shift + E")}));
    EXPECT_EQ(launchAtLogin.text(), QStringLiteral("Launch at login"));
}

TEST_F(Settings, theMenuListsTheAlphabet) {
    ASSERT_EQ(picker.count(), 26);
    for (int row = 0; row < picker.count(); ++row)
        EXPECT_EQ(picker.itemText(row),
                  QStringLiteral("Command + Shift + ") + QLatin1Char(static_cast<char>('A' + row)));
}

TEST_F(Settings, turningTheSwitchRegistersTheLoginItemAndKeepsTheChoice) {
    show();
    QTest::mouseClick(&launchAtLogin, Qt::LeftButton);
    EXPECT_TRUE(store.launchAtLogin());
    EXPECT_TRUE(shell.desktop.userDefaults.boolean(AppPreferences::launchAtLogin));
    settle();
    EXPECT_TRUE(launchAtLogin.isChecked());
    QTest::mouseClick(&launchAtLogin, Qt::LeftButton);
    settle();
    EXPECT_FALSE(store.launchAtLogin());
    EXPECT_FALSE(launchAtLogin.isChecked());
}

TEST_F(Settings, aRefusedSwitchGoesBackAndSaysWhyInRed) {
    shell.desktop.loginItem.refuses = true;
    show();
    launchAtLogin.click();
    settle();
    EXPECT_FALSE(launchAtLogin.isChecked());
    EXPECT_FALSE(store.launchAtLogin());
    QLabel &error = label(refusal);
    EXPECT_EQ(window.size(), QSize(420, 280));
    EXPECT_TRUE(window.rect().contains(placeIn(window, error)));
    const QImage picture = window.grab(placeIn(window, error)).toImage();
    int red = 0;
    for (int x = 0; x < picture.width(); ++x)
        for (int y = 0; y < picture.height(); ++y) {
            const QColor pixel = picture.pixelColor(x, y);
            red += pixel.red() > 130 && pixel.green() < 90 && pixel.blue() < 90 ? 1 : 0;
        }
    EXPECT_GT(red, 50);
}

TEST_F(Settings, theErrorGoesWithTheNextChangeThatSucceeds) {
    shell.desktop.loginItem.refuses = true;
    show();
    launchAtLogin.click();
    settle();
    shell.desktop.loginItem.refuses = false;
    launchAtLogin.click();
    settle();
    EXPECT_TRUE(launchAtLogin.isChecked());
    EXPECT_FALSE(shownTexts(window).contains(refusal));
}

TEST_F(Settings, theErrorIsThereAfterClosingAndOpening) {
    shell.desktop.loginItem.refuses = true;
    show();
    launchAtLogin.click();
    settle();
    window.close();
    show();
    EXPECT_TRUE(shownTexts(window).contains(refusal));
}

TEST_F(Settings, choosingALetterKeepsItAndBindsItAtOnce) {
    shell.model->bootstrap();
    show();
    choose(ShortcutKey::k);
    EXPECT_EQ(shell.desktop.userDefaults.string(AppPreferences::shortcutKey), QStringLiteral("k"));
    EXPECT_TRUE(shell.desktop.hotKeys.press(carbonKeyCode(ShortcutKey::k)));
    EXPECT_FALSE(shell.desktop.hotKeys.press(carbonKeyCode(ShortcutKey::e)));
    EXPECT_TRUE(window.isVisible());
    settle();
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + K"));
    label(QStringLiteral("Current shortcut: Command + Shift + K"));
}

TEST_F(Settings, aLetterRefusedByTheSystemIsNotReportedHere) {
    show();
    shell.desktop.hotKeys.nextRegistrationFails = true;
    choose(ShortcutKey::q);
    settle();
    EXPECT_EQ(shownTexts(window).size(), 4);
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + Q"));
}

TEST_F(Settings, whatChangedWhileTheWindowWasClosedIsShownWhenItOpens) {
    show();
    window.close();
    store.setLaunchAtLogin(true);
    store.setShortcutKey(ShortcutKey::z);
    show();
    EXPECT_TRUE(launchAtLogin.isChecked());
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + Z"));
}

TEST_F(Settings, theViewModelIsWhatTellsTheOpenWindowToLook) {
    show();
    store.setShortcutKey(ShortcutKey::b);
    settle();
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + E"));
    TestAccess::setLoading(*shell.model, false);
    settle();
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + B"));
}

TEST_F(Settings, everythingIsReachedAndWorkedByTheKeyboard) {
    show();
    window.activateWindow();
    QTest::keyClick(&window, Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget(), &launchAtLogin);
    QTest::keyClick(&launchAtLogin, Qt::Key_Space);
    EXPECT_TRUE(store.launchAtLogin());
    QTest::keyClick(&launchAtLogin, Qt::Key_Return);
    EXPECT_FALSE(store.launchAtLogin());
    QTest::keyClick(&launchAtLogin, Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget(), &picker);
    QTest::keyClick(&picker, Qt::Key_Space);
    ASSERT_TRUE(picker.view()->isVisible());
    QTest::keyClick(picker.view(), Qt::Key_K);
    QTest::keyClick(picker.view(), Qt::Key_Return);
    EXPECT_FALSE(picker.view()->isVisible());
    EXPECT_EQ(store.shortcutKey(), ShortcutKey::k);
    QTest::keyClick(&picker, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Settings, theClosedMenuIsNotChangedByTheWheelOrByTyping) {
    show();
    picker.setFocus();
    QTest::keyClick(&picker, Qt::Key_K);
    const QPointF at(picker.rect().center());
    QWheelEvent wheel(at, picker.mapToGlobal(at), {0, -120}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&picker, &wheel);
    EXPECT_EQ(store.shortcutKey(), ShortcutKey::e);
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + E"));
    QTest::keyClick(&picker, Qt::Key_Down);
    EXPECT_TRUE(picker.view()->isVisible());
    EXPECT_EQ(store.shortcutKey(), ShortcutKey::e);
    picker.hidePopup();
}

TEST_F(Settings, theMenuClosedWithoutAChoiceChangesNothing) {
    show();
    picker.setFocus();
    picker.showPopup();
    QTest::keyClick(picker.view(), Qt::Key_K);
    QTest::keyClick(picker.view(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(store.shortcutKey(), ShortcutKey::e);
    EXPECT_EQ(picker.currentText(), QStringLiteral("Command + Shift + E"));
    EXPECT_TRUE(window.isVisible());
}

TEST_F(Settings, assistiveTechnologiesHearNamesRolesAndStates) {
    show();
    const auto *toggle = QAccessible::queryAccessibleInterface(&launchAtLogin);
    EXPECT_EQ(toggle->role(), QAccessible::CheckBox);
    EXPECT_EQ(toggle->text(QAccessible::Name), QStringLiteral("Launch at login"));
    EXPECT_FALSE(toggle->state().checked);
    launchAtLogin.click();
    EXPECT_TRUE(toggle->state().checked);
    const auto *menu = QAccessible::queryAccessibleInterface(&picker);
    EXPECT_EQ(menu->role(), QAccessible::ComboBox);
    const auto labels = menu->relations(QAccessible::Label);
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels[0].first->text(QAccessible::Name), QStringLiteral("Shortcut key"));
    EXPECT_EQ(menu->text(QAccessible::Value), QStringLiteral("Command + Shift + E"));
    EXPECT_EQ(label(QStringLiteral("Shortcut key")).buddy(), &picker);
}

TEST_F(Settings, theColumnHasItsPaddingAndItsSpacing) {
    show();
    const QLabel &title = label(QStringLiteral("Settings"));
    const QLabel &subtitle =
        label(QStringLiteral("Choose how Pindle should behave in the background."));
    const QLabel &section = label(QStringLiteral("Shortcut key"));
    const QLabel &current = label(QStringLiteral("Current shortcut: Command + Shift + E"));
    EXPECT_EQ(placeIn(window, title).topLeft(), QPoint(24, 24));
    EXPECT_EQ(gapDown(title, subtitle), 6);
    EXPECT_EQ(gapDown(subtitle, launchAtLogin), 20);
    EXPECT_EQ(gapDown(launchAtLogin, section), 20);
    EXPECT_EQ(gapDown(section, picker), 8);
    EXPECT_EQ(gapDown(picker, current), 8);
    for (const QWidget *part : std::initializer_list<const QWidget *>{
             &title, &subtitle, &launchAtLogin, &section, &picker, &current})
        EXPECT_EQ(placeIn(window, *part).left(), 24);
}

TEST_F(Settings, theErrorStandsBelowTheShortcutSection) {
    shell.desktop.loginItem.refuses = true;
    show();
    launchAtLogin.click();
    settle();
    EXPECT_EQ(
        gapDown(label(QStringLiteral("Current shortcut: Command + Shift + E")), label(refusal)),
        20);
}

TEST_F(Settings, theWindowFollowsTheDesktopsPalette) {
    AppearanceGuard guard;
    show();
    for (const auto &[name, palette] : desktopPalettes()) {
        QApplication::setPalette(palette);
        settle();
        const QImage picture = window.grab().toImage();
        EXPECT_EQ(picture.pixelColor(2, 2), palette.color(QPalette::Window)) << qPrintable(name);
        // Text of the colour that is due, somewhere in the title.
        const QColor ink = windowtheme::ink(windowtheme::Ink::primary, palette);
        const QImage title =
            window.grab(placeIn(window, label(QStringLiteral("Settings")))).toImage();
        bool found = false;
        for (int x = 0; x < title.width() && !found; ++x)
            for (int y = 0; y < title.height() && !found; ++y)
                found = title.pixelColor(x, y) == ink;
        EXPECT_TRUE(found) << qPrintable(name);
    }
}

TEST_F(Settings, theSwitchIsFilledWithTheAccentColourWhenItIsOn) {
    AppearanceGuard guard;
    for (const auto &[name, palette] : desktopPalettes()) {
        QApplication::setPalette(palette);
        settle();
        // Left of the knob when on, right of it when off.
        const QRectF track(launchAtLogin.sizeHint().width() - 38.0, 0, 38, 22);
        launchAtLogin.resize(launchAtLogin.sizeHint());
        launchAtLogin.setChecked(true);
        expectColour(PartPicture(launchAtLogin).at(track.left() + 8, track.center().y()),
                     windowtheme::accent(palette));
        expectColour(PartPicture(launchAtLogin).at(track.right() - 10, track.center().y()),
                     Qt::white);
        launchAtLogin.setChecked(false);
        expectColour(PartPicture(launchAtLogin).at(track.right() - 8, track.center().y()),
                     windowtheme::controlFill(palette));
    }
}

TEST_F(Settings, aLargerFontMakesTheWindowHigherRatherThanCutItOff) {
    AppearanceGuard guard;
    QFont large = QApplication::font();
    large.setPixelSize(24);
    QApplication::setFont(large);
    shell.desktop.loginItem.refuses = true;
    SettingsWindowController other(*shell.model);
    other.show();
    other.window().findChild<SwitchControl *>()->click();
    settle();
    settle();
    EXPECT_EQ(other.window().width(), 420);
    for (const QLabel *each : shownViews<QLabel>(other.window())) {
        const QRect place = placeIn(other.window(), *each);
        EXPECT_TRUE(other.window().rect().contains(place)) << qPrintable(each->text());
        EXPECT_GE(place.height(), each->heightForWidth(place.width())) << qPrintable(each->text());
    }
}

} // namespace pindle
