#include "PindleMac/FloatingPanel.h"
#include "PindleMac/PindleMacApp.h"
#include "tests/PindleMac/shell/ShellFixture.h"

#include <QApplication>
#include <QScreen>

namespace pindle {

namespace {

struct Delegate : ::testing::Test {
    shelltest::Shell shell;
    AppDelegate delegate{shell.desktop.platform, *shell.model};

    Delegate() { delegate.applicationDidFinishLaunching(); }

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

TEST_F(Delegate, bindsTheShortcutThenMakesThePanelThenListens) {
    EXPECT_EQ(shell.desktop.logged({QStringLiteral("hotkey"), QStringLiteral("observe")}),
              QStringList({QStringLiteral("hotkey register 14 0x300 0x504e444c/1 options=0"),
                           QStringLiteral("hotkey handler 1 0x6b657962/5"),
                           QStringLiteral("observe showPindlePopover"),
                           QStringLiteral("observe closePindlePopover")}));
    ASSERT_TRUE(panel());
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(Delegate, livesOnWithoutAWindow) {
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
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
