#include "PindleMac/platform/linux/screens/QtScreens.h"
#include "PindleMac/platform/linux/x11/XConnection.h"
#include "X11Actor.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScreen>
#include <gtest/gtest.h>

using namespace pindle;
using namespace pindle::test;

namespace {

class QtScreensOnX11 : public testing::Test {
protected:
    QRectF whole() const { return QRectF(QPointF(), QGuiApplication::primaryScreen()->size()); }

    std::unique_ptr<XConnection> connection = XConnection::open();
    QtScreens screens{connection.get()};
};

} // namespace

TEST_F(QtScreensOnX11, aScreenWithoutDocksIsVisibleInFull) {
    ASSERT_EQ(screens.screens().size(), QGuiApplication::screens().size());
    ASSERT_TRUE(screens.mainScreen());
    EXPECT_EQ(screens.screens().constFirst(), *screens.mainScreen());
    EXPECT_EQ(screens.mainScreen()->frame, whole());
    EXPECT_EQ(screens.mainScreen()->visibleFrame, whole());
}

TEST_F(QtScreensOnX11, theSpaceOfADockIsLeftOut) {
    Actor dock;
    const xcb_window_t window = dock.showWindow("dock", "Dock");
    ASSERT_TRUE(window);
    dock.setProperty(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL,
                     {0, 0, 25, 0, 0, 0, 0, 0, 0, 9999, 0, 0});
    EXPECT_EQ(screens.mainScreen()->frame, whole());
    EXPECT_EQ(screens.mainScreen()->visibleFrame, whole().adjusted(0, 0, 0, -25));
    dock.setProperty(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL,
                     {0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 9999});
    EXPECT_EQ(screens.mainScreen()->visibleFrame, whole().adjusted(0, 40, 0, 0));
}

TEST_F(QtScreensOnX11, theOlderPropertyCountsWhereThereIsNoNewerOne) {
    Actor dock;
    const xcb_window_t window = dock.showWindow("dock", "Dock");
    ASSERT_TRUE(window);
    dock.setProperty(window, "_NET_WM_STRUT", XCB_ATOM_CARDINAL, {60, 0, 0, 0});
    EXPECT_EQ(screens.mainScreen()->visibleFrame, whole().adjusted(60, 0, 0, 0));
}

TEST_F(QtScreensOnX11, theSpaceComesBackWithTheEndOfTheDock) {
    {
        Actor dock;
        const xcb_window_t window = dock.showWindow("dock", "Dock");
        dock.setProperty(window, "_NET_WM_STRUT", XCB_ATOM_CARDINAL, {60, 0, 0, 0});
        ASSERT_NE(screens.mainScreen()->visibleFrame, whole());
    }
    EXPECT_TRUE(waitUntil([&] { return screens.mainScreen()->visibleFrame == whole(); }));
}

TEST_F(QtScreensOnX11, aRealPanelIsLeftOut) {
    Program panel(QStringLiteral("trayer"),
                  {QStringLiteral("--edge"), QStringLiteral("bottom"), QStringLiteral("--height"),
                   QStringLiteral("28"), QStringLiteral("--SetDockType"), QStringLiteral("true"),
                   QStringLiteral("--SetPartialStrut"), QStringLiteral("true"),
                   QStringLiteral("--widthtype"), QStringLiteral("percent"),
                   QStringLiteral("--width"), QStringLiteral("100")});
    EXPECT_TRUE(waitUntil(
        [&] { return screens.mainScreen()->visibleFrame == whole().adjusted(0, 28, 0, 0); }));
}

TEST_F(QtScreensOnX11, thePointerIsMeasuredFromTheBottom) {
    Actor user;
    user.click(300, 200);
    EXPECT_TRUE(
        waitUntil([&] { return screens.mouseLocation() == QPointF(300, whole().height() - 200); }));
}

TEST_F(QtScreensOnX11, withoutXServerTheToolkitIsAsked) {
    QtScreens others(nullptr);
    const QScreen &screen = *QGuiApplication::primaryScreen();
    ASSERT_TRUE(others.mainScreen());
    EXPECT_EQ(others.mainScreen()->frame, whole());
    EXPECT_EQ(others.mainScreen()->visibleFrame.size(), QSizeF(screen.availableGeometry().size()));
}

TEST_F(QtScreensOnX11, askingCostsLittleAlsoWithManyWindows) {
    std::vector<std::unique_ptr<Actor>> programs;
    for (int i = 0; i < 30; ++i) {
        programs.push_back(std::make_unique<Actor>());
        ASSERT_TRUE(programs.back()->showWindow("window", "Window"));
    }
    constexpr int rounds = 50;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < rounds; ++i)
        screens.screens();
    const double each = double(timer.nsecsElapsed()) / 1e6 / rounds;
    std::printf("screens with 30 windows: %.3f ms\n", each);
    EXPECT_LT(each, 10);
}
