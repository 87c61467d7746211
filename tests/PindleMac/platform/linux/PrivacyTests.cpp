#include "EventStoreFixture.h"
#include "PindleMac/platform/linux/privacy/DesktopSettings.h"
#include "PindleMac/platform/linux/privacy/PrivacyAddress.h"
#include "PindleMac/platform/linux/privacy/PrivacyPageView.h"
#include "PindleMac/platform/linux/privacy/PrivacyWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <gtest/gtest.h>

namespace pindle {
namespace {

std::optional<PrivacyPage> pageFor(const char *address) {
    return privacyPageFor(QUrl(QString::fromLatin1(address), QUrl::StrictMode));
}

TEST(PrivacyAddress, theTwoPrivacyAddressesMeanTheirPages) {
    EXPECT_EQ(pageFor("x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"),
              PrivacyPage::calendars);
    EXPECT_EQ(
        pageFor("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"),
        PrivacyPage::accessibility);
}

TEST(PrivacyAddress, theSecurityPaneStandsForTheWindow) {
    EXPECT_EQ(pageFor("file:///System/Library/PreferencePanes/Security.prefPane"),
              PrivacyPage::calendars);
}

TEST(PrivacyAddress, everyOtherAddressMeansNothing) {
    for (const char *address :
         {"", "https://pindle.example/?Privacy_Calendars",
          "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendar",
          "x-apple.systempreferences:com.apple.preference.security",
          "x-apple.systempreferences:com.apple.preference.dock?Privacy_Calendars",
          "x-apple.systempreferences:?Privacy_Calendars", "file:///etc/passwd",
          "file:///System/Library/PreferencePanes/Security.prefPane/../../passwd",
          "mailto:a@b.example?Privacy_Calendars"})
        EXPECT_FALSE(pageFor(address)) << address;
}

/// Finds the programs of this list in /usr/bin.
FindProgram installed(const QStringList &programs) {
    return [programs](const QString &name) {
        return programs.contains(name) ? QStringLiteral("/usr/bin/") + name : QString();
    };
}

const QString gnomeCenter = QStringLiteral("gnome-control-center");
const QString plasma = QStringLiteral("systemsettings");
const QString xfceManager = QStringLiteral("xfce4-settings-manager");
const QString xfceAccess = QStringLiteral("xfce4-accessibility-settings");
const QStringList everything{gnomeCenter, plasma, xfceManager, xfceAccess};

QString chosen(PrivacyPage page, const char *desktops, const QStringList &programs) {
    const auto found = desktopSettings(page, QString::fromLatin1(desktops).split(QLatin1Char(':')),
                                       installed(programs));
    return found ? (QStringList(found->path) + found->arguments).join(QLatin1Char(' ')) : QString();
}

TEST(DesktopSettings, eachDesktopsOwnProgramIsChosen) {
    const QString bin = QStringLiteral("/usr/bin/");
    using enum PrivacyPage;
    EXPECT_EQ(chosen(accessibility, "ubuntu:GNOME", everything),
              bin + gnomeCenter + QStringLiteral(" universal-access"));
    EXPECT_EQ(chosen(accessibility, "KDE", everything),
              bin + plasma + QStringLiteral(" kcm_access"));
    EXPECT_EQ(chosen(accessibility, "XFCE", everything), bin + xfceAccess);
    EXPECT_EQ(chosen(calendars, "GNOME", everything),
              bin + gnomeCenter + QStringLiteral(" online-accounts"));
    EXPECT_EQ(chosen(calendars, "KDE", everything), bin + plasma);
    EXPECT_EQ(chosen(calendars, "XFCE", everything), bin + xfceManager);
}

TEST(DesktopSettings, theManagerStandsInForAMissingPage) {
    EXPECT_EQ(chosen(PrivacyPage::accessibility, "XFCE", {gnomeCenter, xfceManager}),
              QStringLiteral("/usr/bin/") + xfceManager);
}

TEST(DesktopSettings, onAnUnknownDesktopWhatIsInstalledIsTaken) {
    EXPECT_EQ(chosen(PrivacyPage::accessibility, "", {xfceAccess}),
              QStringLiteral("/usr/bin/") + xfceAccess);
    EXPECT_EQ(chosen(PrivacyPage::calendars, "LXQt", {plasma}),
              QStringLiteral("/usr/bin/") + plasma);
}

TEST(DesktopSettings, withNoneInstalledThereIsNone) {
    for (const char *desktops : {"", "GNOME", "KDE", "XFCE"}) {
        EXPECT_EQ(chosen(PrivacyPage::accessibility, desktops, {}), QString());
        EXPECT_EQ(chosen(PrivacyPage::calendars, desktops, {}), QString());
    }
}

/// The privacy window over a calendar folder of the test's own and a service that does as told.
struct Privacy : CalendarFolder {
    bool serviceOn = false;
    bool serviceObeys = true;
    int opened = 0;
    std::vector<quintptr> activated;
    std::unique_ptr<PrivacyWindow> window = makeWindow(true);

    std::unique_ptr<PrivacyWindow> makeWindow(bool withSettings) {
        PrivacyPermission service;
        service.title = QStringLiteral("Accessibility");
        service.purpose = QStringLiteral("<b>Purpose</b>");
        service.choice = QStringLiteral("Switch on");
        service.note = QStringLiteral("Note");
        service.state = [this] {
            return PrivacyPermission::State{serviceOn, serviceOn ? QStringLiteral("On.")
                                                                 : QStringLiteral("Off.")};
        };
        service.change = [this](bool on) { serviceOn = serviceObeys ? on : serviceOn; };
        if (withSettings)
            service.openSettings = [this] { ++opened; };
        return std::make_unique<PrivacyWindow>(
            std::vector{calendarPermission(decisions), service},
            [this](quintptr native) { activated.push_back(native); });
    }
    QCheckBox &choice(PrivacyPage page) { return *window->page(page).choice(); }
    bool says(PrivacyPage page, const char *text) {
        for (const QLabel *label : window->page(page).findChildren<QLabel *>()) {
            if (label->text() == QLatin1String(text))
                return true;
        }
        return false;
    }
    void show(PrivacyPage page) {
        window->show(page);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
};

TEST_F(Privacy, theCalendarPageShowsThatNothingWasAskedYet) {
    show(PrivacyPage::calendars);
    EXPECT_FALSE(choice(PrivacyPage::calendars).isChecked());
    EXPECT_TRUE(says(PrivacyPage::calendars, "Pindle has not asked for it yet."));
}

TEST_F(Privacy, whatIsGrantedHereTheNextSaveSees) {
    show(PrivacyPage::calendars);
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::notDetermined);
    QTest::mouseClick(&choice(PrivacyPage::calendars), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::writeOnly);
    EXPECT_TRUE(says(PrivacyPage::calendars, "Pindle may add events."));
    std::optional<bool> granted;
    store->requestWriteOnlyAccessToEvents([&](bool yes, const auto &) { granted = yes; });
    EXPECT_TRUE(waitUntil([&] { return granted.has_value(); }));
    EXPECT_TRUE(granted.value_or(false));
    EXPECT_TRUE(user.asked.isEmpty());
}

TEST_F(Privacy, whatIsRevokedHereTheNextSaveSees) {
    allow();
    show(PrivacyPage::calendars);
    EXPECT_TRUE(choice(PrivacyPage::calendars).isChecked());
    choice(PrivacyPage::calendars).click();
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::denied);
    EXPECT_TRUE(says(PrivacyPage::calendars, "Pindle may not add events."));
    const auto event = this->event(QStringLiteral("Tea"), summer, "Europe/Berlin");
    EXPECT_THROW(store->save(*event, EKSpan::thisEvent), PlatformError);
}

TEST_F(Privacy, theDecisionOutlivesTheProgram) {
    show(PrivacyPage::calendars);
    choice(PrivacyPage::calendars).click();
    AccessDecisions nextStart(permissions);
    EXPECT_EQ(nextStart.calendar(), AccessDecisions::Decision::writeOnly);
}

TEST_F(Privacy, aDecisionMadeElsewhereShowsWhenTheWindowComesBack) {
    show(PrivacyPage::calendars);
    QWidget elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    allow();
    EXPECT_FALSE(choice(PrivacyPage::calendars).isChecked());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_TRUE(waitUntil([this] { return choice(PrivacyPage::calendars).isChecked(); }));
}

TEST_F(Privacy, theServiceIsSwitchedOnAndOff) {
    show(PrivacyPage::accessibility);
    EXPECT_TRUE(says(PrivacyPage::accessibility, "Off."));
    choice(PrivacyPage::accessibility).click();
    EXPECT_TRUE(serviceOn);
    EXPECT_TRUE(says(PrivacyPage::accessibility, "On."));
    choice(PrivacyPage::accessibility).click();
    EXPECT_FALSE(serviceOn);
    EXPECT_TRUE(says(PrivacyPage::accessibility, "Off."));
}

TEST_F(Privacy, aChangeThatTakesAMomentIsShownWhenItHasHappened) {
    serviceObeys = false;
    show(PrivacyPage::accessibility);
    choice(PrivacyPage::accessibility).click();
    window->refresh();
    EXPECT_TRUE(choice(PrivacyPage::accessibility).isChecked()) << "snapped back at once";
    EXPECT_TRUE(says(PrivacyPage::accessibility, "Off."));
    serviceOn = true;
    window->refresh();
    EXPECT_TRUE(says(PrivacyPage::accessibility, "On."));
}

TEST_F(Privacy, aChangeThatNeverHappensIsTakenBack) {
    serviceObeys = false;
    show(PrivacyPage::accessibility);
    choice(PrivacyPage::accessibility).click();
    EXPECT_TRUE(waitUntil([this] { return !choice(PrivacyPage::accessibility).isChecked(); },
                          std::chrono::seconds(5)));
}

TEST_F(Privacy, theAddressedPageIsInFrontWithTheKeyboard) {
    for (const PrivacyPage page : {PrivacyPage::accessibility, PrivacyPage::calendars}) {
        show(page);
        EXPECT_EQ(window->findChild<QTabWidget *>()->currentWidget(), &window->page(page));
        EXPECT_EQ(window->focusWidget(), &choice(page));
    }
    EXPECT_EQ(activated, (std::vector{window->winId(), window->winId()}));
}

TEST_F(Privacy, everythingIsWorkedByTheKeyboard) {
    show(PrivacyPage::calendars);
    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(decisions.calendar(), AccessDecisions::Decision::writeOnly);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(window->findChild<QTabWidget *>()->currentIndex(), 1);
    auto *onward = window->page(PrivacyPage::accessibility).findChild<QPushButton *>();
    QSet<QWidget *> reached;
    for (int step = 0; step < 6; ++step) {
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        reached.insert(window->focusWidget());
    }
    EXPECT_TRUE(reached.contains(&choice(PrivacyPage::accessibility)));
    EXPECT_TRUE(reached.contains(onward));
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(Privacy, theDesktopsOwnSettingsAreOneButtonAway) {
    show(PrivacyPage::accessibility);
    QTest::mouseClick(window->page(PrivacyPage::accessibility).findChild<QPushButton *>(),
                      Qt::LeftButton);
    EXPECT_EQ(opened, 1);
}

TEST_F(Privacy, withoutSettingsOfTheDesktopThereIsNoButton) {
    window = makeWindow(false);
    EXPECT_FALSE(window->page(PrivacyPage::accessibility).findChild<QPushButton *>());
}

TEST_F(Privacy, closingOnlyHidesTheWindow) {
    show(PrivacyPage::calendars);
    EXPECT_FALSE(window->testAttribute(Qt::WA_QuitOnClose));
    window->close();
    EXPECT_FALSE(window->isVisible());
    show(PrivacyPage::accessibility);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Privacy, screenReadersHearTheChoiceAndItsState) {
    show(PrivacyPage::calendars);
    const auto *box = QAccessible::queryAccessibleInterface(&choice(PrivacyPage::calendars));
    EXPECT_EQ(box->role(), QAccessible::CheckBox);
    EXPECT_EQ(box->text(QAccessible::Name), QStringLiteral("Allow Pindle to add events"));
    EXPECT_EQ(box->text(QAccessible::Description),
              QStringLiteral("Pindle has not asked for it yet."));
    choice(PrivacyPage::calendars).click();
    EXPECT_TRUE(box->state().checked);
    EXPECT_EQ(box->text(QAccessible::Description), QStringLiteral("Pindle may add events."));
}

TEST_F(Privacy, itsTextsArePlain) {
    for (const QLabel *label : window->findChildren<QLabel *>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << qPrintable(label->text());
}

TEST_F(Privacy, itHasATitleAndCannotBeResized) {
    show(PrivacyPage::calendars);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Privacy"));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
}

} // namespace
} // namespace pindle
