#include "PindleMac/StatusItemController.h"

#include "PindleMac/FloatingPanel.h"
#include "PindleMac/FloatingPanelController.h"
#include "PindleMac/HelpWindowController.h"
#include "PindleMac/SettingsWindowController.h"
#include "tests/PindleMac/shell/ViewProbe.h"

#include <QScreen>

namespace pindle {
namespace {

using namespace shelltest;

constexpr auto left = EventType::leftMouseUp;
constexpr auto right = EventType::rightMouseUp;

struct StatusItemTest : testing::Test {
    Shell shell;
    std::shared_ptr<FloatingPanelController> panel =
        std::make_shared<FloatingPanelController>(*shell.model, shell.desktop.platform);
    std::shared_ptr<SettingsWindowController> settings =
        std::make_shared<SettingsWindowController>(*shell.model);
    std::shared_ptr<HelpWindowController> help =
        std::make_shared<HelpWindowController>(shell.desktop.platform);
    std::unique_ptr<StatusItemController> controller = std::make_unique<StatusItemController>(
        panel, settings, help, shell.model.get(), shell.desktop.platform);
    fake::FakeStatusBar &bar = shell.desktop.statusBar;

    /// The window of this title while it is shown.
    static QWidget *window(const QString &title) {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->windowTitle() == title && widget->isVisible())
                return widget;
        }
        return nullptr;
    }
    void choose(const char *title) {
        bar.click(right);
        ASSERT_TRUE(bar.open);
        bar.choose(QString::fromUtf8(title));
        settle();
    }
};

TEST_F(StatusItemTest, theItemIsTheCalendarSymbolAloneAndIsCalledPindle) {
    EXPECT_TRUE(bar.itemShown);
    EXPECT_EQ(bar.length, -1);
    EXPECT_EQ(bar.symbol, QStringLiteral("calendar.badge.plus"));
    EXPECT_EQ(bar.description, QStringLiteral("Pindle"));
    EXPECT_EQ(bar.imagePosition, ImagePosition::imageOnly);
    EXPECT_EQ(static_cast<int>(*bar.imagePosition), 1);
}

TEST_F(StatusItemTest, bothButtonsReachItAsTheyGoUp) {
    EXPECT_EQ(bar.mask, 20U);
}

TEST_F(StatusItemTest, theItemGoesWithItsController) {
    controller.reset();
    EXPECT_FALSE(bar.itemShown);
}

TEST_F(StatusItemTest, leftClicksShowAndHideThePanelUnderTheIcon) {
    bar.click(left);
    ASSERT_TRUE(panel->isShown());
    const QWidget *shown = window(QStringLiteral("Pindle"));
    const int height = QGuiApplication::primaryScreen()->geometry().height();
    EXPECT_EQ(shown->pos(), QPoint(1612 - 210, height - (1055 - 20)));
    bar.click(left);
    EXPECT_FALSE(panel->isShown());
    bar.click(left);
    EXPECT_TRUE(panel->isShown());
    EXPECT_FALSE(bar.open);
}

TEST_F(StatusItemTest, aClickThatDoesNotSayWithWhatCountsAsALeftOne) {
    bar.click(std::nullopt);
    EXPECT_TRUE(panel->isShown());
    bar.click(std::nullopt);
    EXPECT_FALSE(panel->isShown());
}

TEST_F(StatusItemTest, whereTheDesktopDoesNotTellThePlaceThePanelOpensAtThePointer) {
    bar.itemFrame.reset();
    shell.desktop.screens.pointer = {1000, 700};
    bar.click(left);
    const int height = QGuiApplication::primaryScreen()->geometry().height();
    EXPECT_EQ(window(QStringLiteral("Pindle"))->pos(), QPoint(790, height - (700 - 20)));
}

TEST_F(StatusItemTest, aRightClickHidesThePanelAndThenOpensTheMenu) {
    bar.click(left);
    ASSERT_TRUE(panel->isShown());
    // Looks, as the panel hides, whether the menu has been opened before.
    struct Watch : QObject {
        fake::FakeDesktop &desktop;
        bool menuBeforeHide = false;
        explicit Watch(fake::FakeDesktop &d)
            : desktop(d) {}
        bool eventFilter(QObject *, QEvent *event) override {
            if (event->type() == QEvent::Hide)
                menuBeforeHide = desktop.log.contains(QStringLiteral("status menu"));
            return false;
        }
    } watch(shell.desktop);
    window(QStringLiteral("Pindle"))->installEventFilter(&watch);
    bar.click(right);
    EXPECT_FALSE(panel->isShown());
    EXPECT_FALSE(watch.menuBeforeHide);
    EXPECT_TRUE(bar.open);
}

TEST_F(StatusItemTest, afterTheMenuALeftClickTogglesAgain) {
    bar.click(right);
    bar.dismiss();
    bar.click(left);
    EXPECT_TRUE(panel->isShown());
    EXPECT_FALSE(bar.open);
    bar.click(right);
    EXPECT_FALSE(panel->isShown());
    EXPECT_TRUE(bar.open);
}

TEST_F(StatusItemTest, theMenuHasTheseItemsInThisOrder) {
    bar.click(right);
    const auto described = [](const Menu &menu) {
        QStringList lines;
        for (const MenuItem &item : menu)
            lines += item.isSeparator ? QStringLiteral("-")
                                      : item.title + QLatin1Char('|') + item.keyEquivalent;
        return lines;
    };
    const QStringList expected{QStringLiteral("Help|"),        QStringLiteral("About|"),
                               QStringLiteral("Report Bugs|"), QStringLiteral("-"),
                               QStringLiteral("Settings|,"),   QStringLiteral("-"),
                               QStringLiteral("Quit|q")};
    EXPECT_EQ(described(*bar.open), expected);
    EXPECT_EQ(described(bar.announced), expected) << "for hosts that ask beforehand";
}

TEST_F(StatusItemTest, helpAndSettingsShowTheirWindows) {
    EXPECT_FALSE(window(QStringLiteral("Help")));
    choose("Help");
    EXPECT_TRUE(window(QStringLiteral("Help")));
    EXPECT_FALSE(window(QStringLiteral("Settings")));
    choose("Settings");
    EXPECT_TRUE(window(QStringLiteral("Settings")));
}

TEST_F(StatusItemTest, aboutOpensTheWebsiteAndNothingElse) {
    choose("About");
    EXPECT_EQ(shell.desktop.workspace.opened,
              QStringList(QString::fromLatin1(AppLinkDestination::about().toEncoded())));
    EXPECT_FALSE(panel->isShown());
    EXPECT_EQ(shell.model->phase(), ParserPhase::idle);
}

TEST_F(StatusItemTest, reportBugsOpensTheContactPageWithTheInstallsKey) {
    choose("Report Bugs");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shell.desktop.workspace.opened.isEmpty(); }));
    const QString page = QString::fromLatin1(AppLinkDestination::reportBugs().toEncoded());
    EXPECT_EQ(shell.desktop.workspace.opened,
              QStringList(page + QStringLiteral("?reason=bug&anonymized_key=key-1")));
    EXPECT_FALSE(panel->isShown());
}

TEST_F(StatusItemTest, aBugReportThatCannotBeMadeOpensNothingAndSaysSoInThePanel) {
    shell.desktop.urlSession.reply = [](const URLRequest &) {
        return fake::FakeURLSession::failure(QStringLiteral("No network."));
    };
    choose("Report Bugs");
    ASSERT_TRUE(QTest::qWaitFor([&] { return shell.model->errorMessage().has_value(); }));
    EXPECT_EQ(*shell.model->errorMessage(), QStringLiteral("No network."));
    EXPECT_TRUE(shell.desktop.workspace.opened.isEmpty());
    EXPECT_FALSE(panel->isShown());
}

TEST_F(StatusItemTest, quitEndsTheProgramAlsoDuringAConversion) {
    shell.desktop.accessibility.select(QStringLiteral("Lunch tomorrow"));
    shell.desktop.urlSession.hold = true;
    shell.model->captureAndConvertSelection();
    ASSERT_TRUE(QTest::qWaitFor([&] { return shell.desktop.urlSession.held.count() > 0; }));
    ASSERT_TRUE(shell.model->isLoading());
    choose("Quit");
    EXPECT_EQ(shell.desktop.application.terminations, 1);
    EXPECT_TRUE(shell.model->isLoading()) << "nothing was waited for";
}

TEST_F(StatusItemTest, nothingIsKeptAliveAndWhatIsGoneDoesNothing) {
    panel.reset();
    settings.reset();
    help.reset();
    shell.model.reset();
    bar.click(left);
    bar.click(std::nullopt);
    for (const char *title : {"Help", "About", "Report Bugs", "Settings"})
        choose(title);
    EXPECT_TRUE(shell.desktop.workspace.opened.isEmpty());
    EXPECT_FALSE(window(QStringLiteral("Help")));
    EXPECT_FALSE(window(QStringLiteral("Settings")));
    choose("Quit");
    EXPECT_EQ(shell.desktop.application.terminations, 1) << "quitting needs none of them";
}

TEST_F(StatusItemTest, anOpenMenuMayOutliveTheController) {
    bar.click(right);
    controller.reset();
    bar.choose(QStringLiteral("About"));
    bar.choose(QStringLiteral("Quit"));
    EXPECT_TRUE(shell.desktop.workspace.opened.isEmpty());
    EXPECT_EQ(shell.desktop.application.terminations, 0);
}

TEST_F(StatusItemTest, allObjectsMayBeAbsentFromTheStart) {
    controller.reset();
    controller = std::make_unique<StatusItemController>(
        std::weak_ptr<FloatingPanelController>(), std::weak_ptr<SettingsWindowController>(),
        std::weak_ptr<HelpWindowController>(), nullptr, shell.desktop.platform);
    bar.action(left);
    bar.action(right);
    ASSERT_TRUE(bar.open);
    bar.choose(QStringLiteral("Help"));
    EXPECT_FALSE(panel->isShown());
}

TEST_F(StatusItemTest, aDesktopWithoutRoomForItLeavesTheRestAtWork) {
    controller.reset();
    bar.hasRoom = false;
    controller = std::make_unique<StatusItemController>(panel, settings, help, shell.model.get(),
                                                        shell.desktop.platform);
    EXPECT_FALSE(bar.itemShown);
    controller->openHelp();
    EXPECT_TRUE(window(QStringLiteral("Help")));
}

} // namespace
} // namespace pindle
