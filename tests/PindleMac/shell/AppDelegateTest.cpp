#include "PindleMac/FloatingPanel.h"
#include "PindleMac/PindleMacApp.h"
#include "tests/PindleMac/shell/ShellFixture.h"

#include <QApplication>
#include <QScreen>
#include <QTest>

namespace pindle {

namespace {

/// Notes each window's title in the desktop's log as the window is made.
class WindowsMade : public QObject {
public:
    explicit WindowsMade(fake::CallLog &log)
        : log_(log) {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override {
        auto *window = qobject_cast<QWidget *>(watched);
        if (window && event->type() == QEvent::WindowTitleChange)
            log_ += QStringLiteral("window ") + window->windowTitle();
        return false;
    }

private:
    fake::CallLog &log_;
};

struct Delegate : ::testing::Test {
    shelltest::Shell shell;
    WindowsMade windows{shell.desktop.log};
    AppDelegate delegate{shell.desktop.platform, *shell.model};

    Delegate() { delegate.applicationDidFinishLaunching(); }
    /// What was started needs its view model.
    ~Delegate() override { QTest::qWait(1); }

    static QWidget *panel() {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<CursorPopoverPanel *>(widget))
                return widget;
        }
        return nullptr;
    }
    /// The toolkit's corner of a panel whose bottom edge is this high above the screen's.
    static QPoint corner(int left, int bottom) {
        return {left, QGuiApplication::primaryScreen()->geometry().height() - bottom - 560};
    }
    void post(const QString &name, const std::any &object = {}) {
        shell.desktop.notificationCenter.post(name, object);
    }
};

} // namespace

TEST_F(Delegate, startsItsPartsInTheirOrder) {
    EXPECT_EQ(shell.desktop.logged({QStringLiteral("application"), QStringLiteral("hotkey"),
                                    QStringLiteral("window"), QStringLiteral("status"),
                                    QStringLiteral("observe")}),
              QStringList({QStringLiteral("application policy 1"),
                           QStringLiteral("hotkey register 14 0x300 0x504e444c/1 options=0"),
                           QStringLiteral("hotkey handler 1 0x6b657962/5"),
                           QStringLiteral("window Pindle"), QStringLiteral("window Settings"),
                           QStringLiteral("window Help"), QStringLiteral("status item"),
                           QStringLiteral("observe showPindlePopover"),
                           QStringLiteral("observe closePindlePopover"),
                           QStringLiteral("application listens")}));
}

TEST_F(Delegate, registersWithTheServiceInTheBackground) {
    EXPECT_TRUE(shell.desktop.urlSession.requests.empty()) << "nothing waits for it";
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shell.desktop.urlSession.requests.empty(); }));
    EXPECT_EQ(shell.desktop.urlSession.requestsTo(QStringLiteral("on-install")), 1);
}

TEST_F(Delegate, showsNothingAtTheStart) {
    for (const QWidget *window : QApplication::topLevelWidgets())
        EXPECT_FALSE(window->isVisible()) << qPrintable(window->windowTitle());
    ASSERT_TRUE(panel());
}

TEST_F(Delegate, aClickOnTheIconTogglesThePanel) {
    shell.desktop.statusBar.click(EventType::leftMouseUp);
    EXPECT_TRUE(panel()->isVisible());
    shell.desktop.statusBar.click(EventType::leftMouseUp);
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(Delegate, beingStartedAgainShowsThePanelAtThePointerAndCapturesNothing) {
    shell.desktop.screens.pointer = {1000, 300};
    shell.desktop.log.clear();
    for (int time = 0; time < 2; ++time) {
        shell.desktop.application.ask(ApplicationRequest::reopen);
        EXPECT_TRUE(panel()->isVisible());
    }
    EXPECT_EQ(panel()->pos(), corner(790, 320));
    QTest::qWait(1);
    EXPECT_TRUE(shell.desktop
                    .logged({QStringLiteral("ax"), QStringLiteral("keys"),
                             QStringLiteral("pasteboard"), QStringLiteral("post")})
                    .isEmpty());
    EXPECT_EQ(shell.model->phase(), ParserPhase::idle);
}

TEST_F(Delegate, theCaptureActionDoesWhatTheShortcutDoes) {
    shell.desktop.accessibility.select(QStringLiteral("Lunch tomorrow"));
    shell.desktop.urlSession.convertsTo(R"({"title":"Lunch","description":"",
        "location":"","startDate":"2025-03-11","endDate":"","startTime":"12:00","endTime":"",
        "timeZone":"Europe/Berlin"})");
    shell.desktop.screens.pointer = {1000, 700};
    const auto run = [this](const std::function<void()> &start) {
        QTest::qWait(1);
        post(closePindlePopover);
        shell.desktop.log.clear();
        start();
        EXPECT_FALSE(panel()->isVisible()) << "it is a task of its own";
        EXPECT_TRUE(QTest::qWaitFor([this] { return shell.model->phase() == ParserPhase::ready; }));
        EXPECT_EQ(panel()->pos(), corner(790, 120));
        TestAccess::setPhase(*shell.model, ParserPhase::idle);
        return shell.desktop.log;
    };
    const auto byAction =
        run([this] { shell.desktop.application.ask(ApplicationRequest::capture); });
    EXPECT_EQ(byAction, run([this] { shell.desktop.hotKeys.deliver(); }));
    EXPECT_TRUE(byAction.contains(QStringLiteral("post showPindlePopover")));
}

TEST_F(Delegate, theOtherActionsDoWhatTheMenuDoes) {
    const auto shown = [](const QString &title) {
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == title && window->isVisible())
                return true;
        }
        return false;
    };
    const auto &ask = shell.desktop.application.ask;
    ask(ApplicationRequest::settings);
    EXPECT_TRUE(shown(QStringLiteral("Settings")));
    EXPECT_FALSE(shown(QStringLiteral("Help")));
    ask(ApplicationRequest::help);
    EXPECT_TRUE(shown(QStringLiteral("Help")));
    ask(ApplicationRequest::about);
    ask(ApplicationRequest::reportBugs);
    EXPECT_TRUE(QTest::qWaitFor([this] { return shell.desktop.workspace.opened.size() == 2; }));
    EXPECT_TRUE(shell.desktop.workspace.opened[1].endsWith(
        QStringLiteral("?reason=bug&anonymized_key=key-1")));
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_EQ(shell.desktop.application.terminations, 0);
    ask(ApplicationRequest::quit);
    EXPECT_EQ(shell.desktop.application.terminations, 1);
    EXPECT_TRUE(shell.desktop.eventStore.saved.empty());
}

TEST_F(Delegate, showsThePanelWhereTheRequestSays) {
    post(showPindlePopover, FloatingPanelRequest{{1000, 700}});
    ASSERT_TRUE(panel()->isVisible());
    EXPECT_EQ(panel()->pos(), corner(790, 120));
}

TEST_F(Delegate, showsThePanelAtThePointerWhenTheRequestIsMissingOrOfAnotherType) {
    shell.desktop.screens.pointer = {1000, 300};
    for (const std::any &object : {std::any(), std::any(42)}) {
        post(closePindlePopover);
        EXPECT_FALSE(panel()->isVisible());
        post(showPindlePopover, object);
        ASSERT_TRUE(panel()->isVisible());
        EXPECT_EQ(panel()->pos(), corner(790, 320));
    }
}

TEST_F(Delegate, closesThePanelOnItsNotification) {
    post(showPindlePopover);
    post(closePindlePopover);
    EXPECT_FALSE(panel()->isVisible());
}

} // namespace pindle
