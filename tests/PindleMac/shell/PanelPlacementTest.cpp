#include "PindleMac/PanelPlacement.h"

#include <gtest/gtest.h>

namespace pindle {
namespace {

constexpr QSizeF size(420, 560);

Screen screen(const QRectF &frame, const QRectF &visible) {
    return {frame, visible};
}

const Screen mainScreen = screen({0, 0, 1920, 1080}, {0, 0, 1920, 1055});

QPointF originAt(QPointF anchor, const QList<Screen> &screens = {mainScreen}) {
    return panelOrigin(anchor, {0, 0}, screens,
                       screens.isEmpty() ? std::nullopt : std::optional(screens.front()), size);
}

TEST(PanelPlacement, thePanelOpensCentredBelowItsAnchor) {
    EXPECT_EQ(originAt({1000, 700}), QPointF(790, 120));
}

TEST(PanelPlacement, withoutRoomBelowThePanelOpensAbove) {
    EXPECT_EQ(originAt({1000, 300}), QPointF(790, 320));
}

TEST(PanelPlacement, thePanelKeepsItsMarginToTheLeftEdge) {
    EXPECT_EQ(originAt({5, 700}).x(), 18);
}

TEST(PanelPlacement, thePanelKeepsItsMarginToTheRightEdge) {
    EXPECT_EQ(originAt({1915, 700}).x(), 1482);
}

TEST(PanelPlacement, anAnchorNearTheTopKeepsThePlaceBelow) {
    EXPECT_EQ(originAt({1000, 1050}), QPointF(790, 470));
}

TEST(PanelPlacement, anAnchorInTheMenuBarIsClampedToTheUsableArea) {
    EXPECT_EQ(originAt({1000, 1078}), QPointF(790, 477));
}

TEST(PanelPlacement, theLastPlaceBelowIsWhereTheMarginIsJustKept) {
    EXPECT_EQ(originAt({1000, 598}).y(), 18);
    EXPECT_EQ(originAt({1000, 597.5}).y(), 477) << "flipped, and clamped at the top";
}

TEST(PanelPlacement, withoutAnAnchorThePointerIsTheAnchor) {
    EXPECT_EQ(panelOrigin(std::nullopt, {1000, 700}, {mainScreen}, mainScreen, size),
              QPointF(790, 120));
}

TEST(PanelPlacement, anAnchorGoesBeforeThePointer) {
    EXPECT_EQ(panelOrigin(QPointF(1000, 700), {5, 5}, {mainScreen}, mainScreen, size),
              QPointF(790, 120));
}

TEST(PanelPlacement, anAnchorOnAScreenToTheRightOpensThere) {
    const Screen right = screen({1920, 0, 1280, 1024}, {1920, 40, 1280, 960});
    EXPECT_EQ(originAt({1925, 800}, {mainScreen, right}), QPointF(1938, 220));
    EXPECT_EQ(originAt({3195, 800}, {mainScreen, right}), QPointF(2762, 220));
}

TEST(PanelPlacement, anAnchorOnAScreenToTheLeftOpensThereAtNegativePlaces) {
    const Screen left = screen({-1280, -200, 1280, 1024}, {-1280, -200, 1280, 1000});
    EXPECT_EQ(originAt({-1270, 600}, {mainScreen, left}), QPointF(-1262, 20));
    EXPECT_EQ(originAt({-5, 600}, {mainScreen, left}), QPointF(-438, 20));
}

TEST(PanelPlacement, anAnchorOnAScreenAboveOpensThere) {
    const Screen above = screen({0, 1080, 1920, 1080}, {0, 1080, 1920, 1055});
    EXPECT_EQ(originAt({960, 2000}, {mainScreen, above}), QPointF(750, 1420));
    EXPECT_EQ(originAt({960, 1200}, {mainScreen, above}), QPointF(750, 1220));
}

TEST(PanelPlacement, anAnchorOnAScreenBelowOpensThereAtNegativePlaces) {
    const Screen below = screen({0, -900, 1440, 900}, {0, -900, 1440, 870});
    EXPECT_EQ(originAt({700, -100}, {mainScreen, below}), QPointF(490, -680));
}

TEST(PanelPlacement, theEdgeBetweenTwoScreensBelongsToOneOfThem) {
    const Screen right = screen({1920, 0, 1920, 1080}, {1920, 0, 1920, 1055});
    EXPECT_EQ(originAt({1920, 700}, {mainScreen, right}).x(), 1938);
    EXPECT_EQ(originAt({1919.5, 700}, {mainScreen, right}).x(), 1482);

    const Screen above = screen({0, 1080, 1920, 1080}, {0, 1080, 1920, 1055});
    EXPECT_EQ(originAt({960, 1080}, {above, mainScreen}).y(), 477) << "the lower one's top edge";
    EXPECT_EQ(originAt({960, 1081}, {mainScreen, above}).y(), 1101) << "already the upper one";
}

TEST(PanelPlacement, ofOverlappingScreensTheFirstIsTaken) {
    const Screen mirror = screen({0, 0, 1280, 720}, {0, 0, 1280, 700});
    EXPECT_EQ(originAt({1270, 690}, {mainScreen, mirror}).x(), 1060);
    EXPECT_EQ(originAt({1270, 690}, {mirror, mainScreen}).x(), 842);
}

TEST(PanelPlacement, anAnchorInNoScreenOpensOnTheMainScreen) {
    const Screen right = screen({1920, 0, 1280, 1024}, {1920, 0, 1280, 1024});
    EXPECT_EQ(panelOrigin(QPointF(9000, 9000), {}, {right, mainScreen}, mainScreen, size),
              QPointF(1482, 477));
    EXPECT_EQ(panelOrigin(QPointF(-9000, -9000), {}, {right, mainScreen}, mainScreen, size),
              QPointF(18, 18));
}

TEST(PanelPlacement, withoutAnyScreenAnOrdinaryAreaIsAssumed) {
    EXPECT_EQ(originAt({700, 800}, {}), QPointF(490, 220));
    EXPECT_EQ(originAt({5000, 5000}, {}), QPointF(1440 - 420 - 18, 900 - 560 - 18));
}

TEST(PanelPlacement, inTooNarrowAnAreaTheRightMarginIsKept) {
    const Screen narrow = screen({0, 0, 400, 1080}, {0, 0, 400, 1080});
    EXPECT_EQ(originAt({200, 900}, {narrow}), QPointF(400 - 420 - 18, 320));
}

TEST(PanelPlacement, inTooLowAnAreaTheUpperMarginIsKept) {
    const Screen low = screen({0, 0, 1280, 500}, {0, 0, 1280, 500});
    EXPECT_EQ(originAt({640, 250}, {low}).y(), 500 - 560 - 18);
}

TEST(PanelPlacement, aLowCardStaysAtTheEdgeNextToTheAnchor) {
    const QPointF below(790, 120);
    EXPECT_EQ(cardOffset({1000, 700}, below, 560, 240), 0) << "right under the anchor";
    const QPointF above(790, 320);
    EXPECT_EQ(cardOffset({1000, 300}, above, 560, 240), 320) << "right above the anchor";
}

TEST(PanelPlacement, aLowCardInAFrameOverTheAnchorKeepsClearOfIt) {
    // The frame's lower part lies over the anchor, 160 points above the frame's lower edge.
    EXPECT_EQ(cardOffset({1000, 400}, {790, 240}, 560, 240), 400 - 20 - 240);
    EXPECT_EQ(cardOffset({1000, 400}, {790, 240}, 560, 500), 0) << "no room: as far as it goes";
}

TEST(PanelPlacement, aFullCardFillsTheFrame) {
    EXPECT_EQ(cardOffset({1000, 700}, {790, 120}, 560, 560), 0);
    EXPECT_EQ(cardOffset({1000, 300}, {790, 320}, 560, 560), 0);
}

TEST(PanelPlacement, placesAreMirroredForAToolkitThatCountsDownwards) {
    EXPECT_EQ(toolkitTopLeft({790, 120}, 560, {0, 0, 1920, 1080}), QPoint(790, 400));
    EXPECT_EQ(toolkitTopLeft({-1262, 20}, 560, {0, 0, 1920, 1080}), QPoint(-1262, 500));
    EXPECT_EQ(toolkitTopLeft({100, 1420}, 560, {0, 0, 1920, 1080}), QPoint(100, -900));
}

TEST(PanelPlacement, theMainScreenNeedNotBeAtTheToolkitsOrigin) {
    EXPECT_EQ(toolkitTopLeft({790, 120}, 560, {1280, 200, 1920, 1080}), QPoint(2070, 600));
}

TEST(PanelPlacement, fractionsAreRoundedToTheNearestPixel) {
    EXPECT_EQ(toolkitTopLeft({790.5, 120.25}, 560, {0, 0, 1920, 1080}), QPoint(791, 400));
}

} // namespace
} // namespace pindle
