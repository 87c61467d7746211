#include "PindleMac/FloatingPanel.h"

#include "PindleMac/FloatingPanelController.h"
#include "tests/PindleMac/shell/ViewProbe.h"

#include <QMenu>
#include <QScreen>

namespace pindle {
namespace {

using namespace shelltest;

constexpr QPointF somewhere(1000, 700);

struct ShownPanel {
    Shell shell;
    FloatingPanelController controller{*shell.model, shell.desktop.platform};
    CursorPopoverPanel &panel = find();

    static CursorPopoverPanel &find() {
        for (QWidget *window : QApplication::topLevelWidgets())
            if (auto *panel = qobject_cast<CursorPopoverPanel *>(window))
                return *panel;
        qFatal("no panel");
    }

    const ContentView &content() const { return *panel.findChild<ContentView *>(); }

    /// The frame's bottom-left corner, origin at the bottom-left of the main screen.
    QPoint origin() const {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        return {panel.x() - screen.x(), screen.y() + screen.height() - panel.y() - 560};
    }
};

/// A panel that has the keyboard; another window to give it to.
struct KeyPanel : ShownPanel {
    QWidget other;

    KeyPanel() {
        other.show();
        controller.show(somewhere);
        panel.activateWindow();
        settle();
    }
};

TEST(FloatingPanel, itIsCreatedHidden) {
    const ShownPanel shown;
    EXPECT_FALSE(shown.controller.isShown());
    EXPECT_FALSE(shown.panel.isVisible());
}

TEST(FloatingPanel, itIsABorderlessTranslucentWindowAboveOthers) {
    const ShownPanel shown;
    const Qt::WindowFlags flags = shown.panel.windowFlags();
    EXPECT_EQ(flags & Qt::WindowType_Mask, Qt::Tool);
    EXPECT_TRUE(flags.testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(flags.testFlag(Qt::NoDropShadowWindowHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowDoesNotAcceptFocus)) << "it can become key";
    EXPECT_TRUE(shown.panel.testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_TRUE(shown.panel.testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(shown.panel.canBecomeKeyWindow());
    EXPECT_FALSE(shown.panel.canBecomeMainWindow());
}

TEST(FloatingPanel, showingPlacesTheWholeFrame) {
    ShownPanel shown;
    shown.controller.show(somewhere);
    EXPECT_TRUE(shown.controller.isShown());
    EXPECT_EQ(shown.panel.size(), QSize(420, 560));
    EXPECT_EQ(shown.origin(), QPoint(790, 120));
}

TEST(FloatingPanel, withoutAPointItOpensAtThePointer) {
    ShownPanel shown;
    shown.shell.desktop.screens.pointer = {5, 700};
    shown.controller.show(std::nullopt);
    EXPECT_EQ(shown.origin(), QPoint(18, 120));
}

TEST(FloatingPanel, showingAgainMovesIt) {
    ShownPanel shown;
    shown.controller.show(somewhere);
    shown.controller.show(QPointF(1000, 300));
    EXPECT_TRUE(shown.controller.isShown());
    EXPECT_EQ(shown.origin(), QPoint(790, 320));
}

TEST(FloatingPanel, everyShowAsksForAllWorkspaces) {
    ShownPanel shown;
    shown.controller.show(somewhere);
    EXPECT_EQ(shown.shell.desktop.windowServer.floated, 1);
    shown.controller.close();
    shown.controller.show(somewhere);
    EXPECT_EQ(shown.shell.desktop.windowServer.floated, 2);
}

TEST(FloatingPanel, closingHidesItAndKeepsItsContent) {
    ShownPanel shown;
    shown.shell.becomeReady();
    shown.controller.show(somewhere);
    const auto *content = &shown.content();
    shown.controller.close();
    EXPECT_FALSE(shown.controller.isShown());
    shown.controller.show(somewhere);
    EXPECT_EQ(&shown.content(), content);
    EXPECT_EQ(field(shown.panel, QStringLiteral("Title")).text(), Shell::lunch().title);
}

TEST(FloatingPanel, itShowsTheStateOfTheMomentItIsShown) {
    ShownPanel shown;
    shown.shell.becomeReady();
    shown.controller.show(somewhere);
    EXPECT_EQ(shownViews<QLineEdit>(shown.panel).size(), 7) << "without waiting for a turn";
}

TEST(FloatingPanel, losingTheKeyboardHidesIt) {
    KeyPanel shown;
    ASSERT_TRUE(shown.panel.isActiveWindow());
    shown.other.activateWindow();
    settle();
    EXPECT_FALSE(shown.controller.isShown());
}

TEST(FloatingPanel, losingTheKeyboardToAQuestionOfTheSystemKeepsIt) {
    KeyPanel shown;
    shown.shell.desktop.windowServer.questionShown = true;
    shown.other.activateWindow();
    settle();
    EXPECT_TRUE(shown.controller.isShown());

    shown.panel.activateWindow();
    settle();
    shown.shell.desktop.windowServer.questionShown = false;
    shown.other.activateWindow();
    settle();
    EXPECT_FALSE(shown.controller.isShown()) << "once the question has gone";
}

TEST(FloatingPanel, aKeyboardThatWentElsewhereAfterAQuestionIsAskedForAgain) {
    KeyPanel shown;
    shown.shell.desktop.windowServer.questionShown = true;
    shown.other.activateWindow();
    settle();
    ASSERT_TRUE(shown.controller.isShown());
    shown.shell.desktop.windowServer.questionShown = false;
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown.panel.isActiveWindow(); }, 3000));
    EXPECT_TRUE(shown.controller.isShown());
}

TEST(FloatingPanel, aKeyboardThatIsTakenAgainAfterAQuestionHidesIt) {
    KeyPanel shown;
    shown.shell.desktop.windowServer.questionShown = true;
    shown.other.activateWindow();
    settle();
    shown.shell.desktop.windowServer.questionShown = false;
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown.panel.isActiveWindow(); }, 3000));
    shown.other.activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shown.controller.isShown(); }, 3000));
}

TEST(FloatingPanel, aKeyboardThatComesBackFromAQuestionKeepsIt) {
    KeyPanel shown;
    shown.shell.desktop.windowServer.questionShown = true;
    shown.other.activateWindow();
    settle();
    shown.panel.activateWindow();
    settle();
    shown.shell.desktop.windowServer.questionShown = false;
    EXPECT_FALSE(QTest::qWaitFor([&] { return !shown.controller.isShown(); }, 1200));
}

TEST(FloatingPanel, losingTheKeyboardToAMenuOfItsOwnKeepsIt) {
    KeyPanel shown;
    QMenu menu(&shown.panel);
    menu.addAction(QStringLiteral("Copy"));
    menu.popup({0, 0});
    ASSERT_EQ(QApplication::activePopupWidget(), &menu);
    QEvent deactivate(QEvent::WindowDeactivate);
    QApplication::sendEvent(&shown.panel, &deactivate);
    EXPECT_TRUE(shown.controller.isShown());
    menu.close();
}

TEST(FloatingPanel, aPressInsideTakesTheKeyboard) {
    KeyPanel shown;
    shown.shell.desktop.windowServer.questionShown = true;
    shown.other.activateWindow();
    settle();
    ASSERT_FALSE(shown.panel.isActiveWindow());
    QTest::mouseClick(shown.panel.windowHandle(), Qt::LeftButton, {}, QPoint(210, 12));
    settle();
    EXPECT_TRUE(shown.panel.isActiveWindow());
}

TEST(FloatingPanel, withTheKeyboardNoControlIsFocusedUnasked) {
    KeyPanel shown;
    ASSERT_TRUE(shown.panel.isActiveWindow());
    EXPECT_EQ(QApplication::focusWidget(), &shown.panel);
    shown.shell.becomeReady();
    settle();
    field(shown.panel, QStringLiteral("Title")).setFocus();
    shown.other.activateWindow();
    settle();
    shown.controller.show(somewhere);
    shown.panel.activateWindow();
    settle();
    EXPECT_EQ(QApplication::focusWidget(), &shown.panel) << "each time it is shown";
}

TEST(FloatingPanel, aPressOnABareSpotLetsEscapeClose) {
    KeyPanel shown;
    QTest::mouseClick(shown.panel.windowHandle(), Qt::LeftButton, {}, QPoint(210, 12));
    settle();
    QTest::keyClick(shown.panel.windowHandle(), Qt::Key_Escape);
    ASSERT_EQ(shown.shell.desktop.notificationCenter.posted.size(), 1U);
    EXPECT_EQ(shown.shell.desktop.notificationCenter.posted[0].first, closePindlePopover);
}

TEST(FloatingPanel, aClickOnTheStatusItemShowsItUnderTheIconAndTheNextHidesIt) {
    ShownPanel shown;
    const QRectF icon(1600, 1055, 24, 25);
    shown.controller.toggleFromStatusItem(icon);
    EXPECT_TRUE(shown.controller.isShown());
    EXPECT_EQ(shown.origin(), QPoint(1612 - 210, 1055 - 20 - 560));
    shown.controller.toggleFromStatusItem(icon);
    EXPECT_FALSE(shown.controller.isShown());
    shown.controller.toggleFromStatusItem(icon);
    EXPECT_TRUE(shown.controller.isShown());
}

TEST(FloatingPanel, aStatusItemWithoutAFrameShowsItAtThePointer) {
    ShownPanel shown;
    shown.shell.desktop.screens.pointer = somewhere;
    shown.controller.toggleFromStatusItem(std::nullopt);
    EXPECT_EQ(shown.origin(), QPoint(790, 120));
}

TEST(FloatingPanel, aLowCardIsAtTheTopOfAFrameBelowItsAnchor) {
    ShownPanel shown;
    shown.controller.show(somewhere);
    EXPECT_EQ(shown.content().geometry(), QRect(0, 0, 420, shown.content().contentHeight()));
    EXPECT_LT(shown.content().height(), 560);
}

TEST(FloatingPanel, aLowCardIsAtTheBottomOfAFrameAboveItsAnchor) {
    ShownPanel shown;
    shown.controller.show(QPointF(1000, 300));
    EXPECT_EQ(shown.content().geometry().bottom(), 559);
}

TEST(FloatingPanel, theCardGrowsAndShrinksInAFrameThatStays) {
    ShownPanel shown;
    shown.controller.show(QPointF(1000, 300));
    const QPoint origin = shown.origin();
    shown.shell.becomeReady();
    settle();
    EXPECT_EQ(shown.content().geometry(), QRect(0, 0, 420, 560));
    TestAccess::setPhase(*shown.shell.model, ParserPhase::failed);
    settle();
    EXPECT_LT(shown.content().height(), 560);
    EXPECT_EQ(shown.content().geometry().bottom(), 559);
    EXPECT_EQ(shown.origin(), origin);
    EXPECT_EQ(shown.panel.size(), QSize(420, 560));
}

TEST(FloatingPanel, whatIsNotTheCardIsNeitherSeenNorClicked) {
    ShownPanel shown;
    shown.controller.show(somewhere);
    const int height = shown.content().height();
    EXPECT_EQ(shown.panel.mask().boundingRect(), QRect(0, 0, 420, height));
    EXPECT_FALSE(shown.panel.mask().contains(QPoint(210, height + 5)));
    EXPECT_TRUE(shown.panel.mask().contains(QPoint(1, 1))) << "a compositor clears the corners";
}

TEST(FloatingPanel, withoutACompositorTheWindowHasTheCardsShape) {
    ShownPanel shown;
    shown.shell.desktop.windowServer.compositing = false;
    shown.shell.desktop.windowServer.compositingChanged();
    shown.controller.show(somewhere);
    EXPECT_FALSE(shown.panel.mask().contains(QPoint(3, 3)));
    EXPECT_TRUE(shown.panel.mask().contains(QPoint(14, 14)));
    const QImage image = shown.panel.grab().toImage();
    const qreal ratio = image.devicePixelRatio();
    for (const QPoint place : {QPoint(0, 0), QPoint(8, 8), QPoint(9, 9), QPoint(419, 0)}) {
        const QColor colour = image.pixelColor(place * ratio);
        EXPECT_EQ(colour.alpha(), 255);
        EXPECT_GT(colour.lightness(), 200) << "never black";
    }
    shown.shell.desktop.windowServer.compositing = true;
    shown.shell.desktop.windowServer.compositingChanged();
    EXPECT_TRUE(shown.panel.mask().contains(QPoint(3, 3)));
}

TEST(FloatingPanel, preparingShowsNothing) {
    ShownPanel shown;
    shown.controller.prepare();
    EXPECT_FALSE(shown.controller.isShown());
    EXPECT_NE(shown.panel.windowHandle(), nullptr);
    EXPECT_EQ(shown.shell.desktop.windowServer.floated, 0);
}

} // namespace
} // namespace pindle
