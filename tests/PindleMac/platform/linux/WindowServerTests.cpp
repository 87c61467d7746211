#include "PindleMac/platform/linux/windowserver/X11WindowServer.h"
#include "PindleMac/platform/linux/x11/XConnection.h"
#include "X11Actor.h"

#include <QProcess>
#include <QTest>
#include <QWidget>
#include <cstring>
#include <gtest/gtest.h>

using namespace pindle;
using namespace pindle::test;

namespace {

class WindowServerOnX11 : public testing::Test {
protected:
    QList<quint32> numbers(quintptr window, const char *property) {
        const auto reply = xcbReply(xcb_get_property_reply(
            observer->xcb(),
            xcb_get_property(observer->xcb(), 0, xcb_window_t(window), observer->atom(property),
                             XCB_GET_PROPERTY_TYPE_ANY, 0, 32),
            nullptr));
        if (!reply)
            return {};
        const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
        return {values, values + xcb_get_property_value_length(reply.get()) / 4};
    }

    std::unique_ptr<XConnection> connection = XConnection::open();
    /// Looks, so that the server's own connection receives nothing while it is asked.
    std::unique_ptr<XConnection> observer = XConnection::open();
    SystemQuestions questions;
    X11WindowServer server{*connection, questions};
};

} // namespace

TEST_F(WindowServerOnX11, aFloatingWindowIsOnAllDesktopsAboveOthersAndInNoTaskBar) {
    QWidget panel(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    panel.setAttribute(Qt::WA_ShowWithoutActivating);
    panel.resize(200, 100);
    panel.show();
    server.floatOnAllSpaces(panel.winId());
    EXPECT_TRUE(waitUntil(
        [&] { return numbers(panel.winId(), "_NET_WM_DESKTOP") == QList<quint32>{0xFFFFFFFF}; }));
    for (const char *state :
         {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        EXPECT_TRUE(waitUntil([&] {
            return numbers(panel.winId(), "_NET_WM_STATE").contains(observer->atom(state));
        })) << state;
    }
    // Also when it is shown again.
    panel.hide();
    settle(100);
    panel.show();
    server.floatOnAllSpaces(panel.winId());
    EXPECT_TRUE(waitUntil(
        [&] { return numbers(panel.winId(), "_NET_WM_DESKTOP") == QList<quint32>{0xFFFFFFFF}; }));
}

TEST_F(WindowServerOnX11, aWindowComesToTheFrontOfAnotherProgramsThatIsInUse) {
    QWidget window;
    window.resize(200, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const Program other(QStringLiteral("xterm"), {});
    ASSERT_TRUE(waitUntil([&] { return observer->activeWindow() != window.winId(); }, 5000));
    QProcess::execute(QStringLiteral("timeout"), {QStringLiteral("5"), QStringLiteral("xdotool"),
                                                  QStringLiteral("key"), QStringLiteral("a")});
    window.raise();
    server.activateIgnoringOtherApps(window.winId());
    EXPECT_TRUE(waitUntil([&] { return observer->activeWindow() == window.winId(); }));
}

TEST_F(WindowServerOnX11, aWindowShownJustNowComesToTheFront) {
    const Program other(QStringLiteral("xterm"), {});
    ASSERT_TRUE(waitUntil([&] { return observer->activeWindow() != XCB_NONE; }, 5000));
    QWidget window;
    window.resize(200, 100);
    window.show();
    server.activateIgnoringOtherApps(window.winId());
    EXPECT_TRUE(waitUntil([&] { return observer->activeWindow() == window.winId(); }));
}

TEST_F(WindowServerOnX11, aMinimizedWindowComesBack) {
    QWidget window;
    window.resize(200, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.showMinimized();
    const auto hidden = [&] {
        return numbers(window.winId(), "_NET_WM_STATE")
            .contains(observer->atom("_NET_WM_STATE_HIDDEN"));
    };
    ASSERT_TRUE(waitUntil(hidden));
    server.activateIgnoringOtherApps(window.winId());
    EXPECT_TRUE(waitUntil([&] { return !hidden(); }));
    EXPECT_TRUE(waitUntil([&] { return observer->activeWindow() == window.winId(); }));
}

TEST_F(WindowServerOnX11, aWindowOfAnotherWorkspaceComesToThisOne) {
    const auto toDesktop = [](int number) {
        QProcess::execute(QStringLiteral("timeout"),
                          {QStringLiteral("5"), QStringLiteral("xdotool"),
                           QStringLiteral("set_desktop"), QString::number(number)});
    };
    QWidget window;
    window.resize(200, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_EQ(numbers(window.winId(), "_NET_WM_DESKTOP"), QList<quint32>{0});
    toDesktop(1);
    ASSERT_TRUE(waitUntil(
        [&] { return observer->cardinal(observer->root(), "_NET_CURRENT_DESKTOP") == 1U; }));
    server.activateIgnoringOtherApps(window.winId());
    EXPECT_TRUE(
        waitUntil([&] { return numbers(window.winId(), "_NET_WM_DESKTOP") == QList<quint32>{1}; }));
    EXPECT_TRUE(waitUntil([&] { return observer->activeWindow() == window.winId(); }));
    EXPECT_EQ(observer->cardinal(observer->root(), "_NET_CURRENT_DESKTOP"), 1U);
    toDesktop(0);
}

TEST_F(WindowServerOnX11, aWindowThatIsGoneByThenDoesNoHarm) {
    auto window = std::make_unique<QWidget>();
    window->show();
    server.activateIgnoringOtherApps(window->winId());
    window.reset();
    settle(100);
    EXPECT_EQ(xcb_connection_has_error(connection->xcb()), 0);
}

TEST_F(WindowServerOnX11, aCompositorIsNoticedWhenItComesAndGoes) {
    int changes = 0;
    server.observeCompositing([&] { ++changes; });
    EXPECT_FALSE(server.compositingActive());
    {
        Program compositor(QStringLiteral("picom"),
                           {QStringLiteral("--backend"), QStringLiteral("xrender"),
                            QStringLiteral("--config"), QStringLiteral("/dev/null")});
        EXPECT_TRUE(waitUntil([&] { return changes == 1; }));
        EXPECT_TRUE(server.compositingActive());
    }
    EXPECT_TRUE(waitUntil([&] { return changes == 2; }));
    EXPECT_FALSE(server.compositingActive());
}

TEST_F(WindowServerOnX11, questionsOfTheSystemAreThoseCounted) {
    EXPECT_FALSE(server.systemQuestionShown());
    ++questions.shown;
    EXPECT_TRUE(server.systemQuestionShown());
    --questions.shown;
    EXPECT_FALSE(server.systemQuestionShown());
}
