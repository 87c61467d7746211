#include "PindleMac/platform/linux/windowserver/X11WindowServer.h"
#include "PindleMac/platform/linux/x11/XConnection.h"
#include "X11Actor.h"

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
            connection->xcb(),
            xcb_get_property(connection->xcb(), 0, xcb_window_t(window), connection->atom(property),
                             XCB_GET_PROPERTY_TYPE_ANY, 0, 32),
            nullptr));
        if (!reply)
            return {};
        const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
        return {values, values + xcb_get_property_value_length(reply.get()) / 4};
    }

    std::unique_ptr<XConnection> connection = XConnection::open();
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
            return numbers(panel.winId(), "_NET_WM_STATE").contains(connection->atom(state));
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
