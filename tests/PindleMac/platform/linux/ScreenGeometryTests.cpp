#include "PindleMac/platform/linux/screens/ScreenGeometry.h"

#include <gtest/gtest.h>

using namespace pindle;

namespace {

constexpr QSize whole(3200, 1200);

} // namespace

TEST(ScreenGeometry, theMainScreenBeginsAtTheOrigin) {
    const QRectF main(0, 0, 1920, 1080);
    EXPECT_EQ(flipped(main, main), QRectF(0, 0, 1920, 1080));
    // A panel of 25 points at the top shortens the upper end.
    EXPECT_EQ(flipped(QRectF(0, 25, 1920, 1055), main), QRectF(0, 0, 1920, 1055));
    // One at the bottom raises the lower end.
    EXPECT_EQ(flipped(QRectF(0, 0, 1920, 1050), main), QRectF(0, 30, 1920, 1050));
}

TEST(ScreenGeometry, screensAroundTheMainOneHaveTheirPlaces) {
    const QRectF main(1920, 200, 1280, 1024);
    struct Row {
        QRectF toolkit, global;
    };
    const Row rows[] = {
        {{0, 0, 1920, 1080}, {-1920, 144, 1920, 1080}},  // left of it, tops differ
        {{3200, 200, 800, 600}, {1280, 424, 800, 600}},  // right of it, tops aligned
        {{1920, 1224, 1280, 400}, {0, -400, 1280, 400}}, // below it
        {{1920, -700, 1280, 900}, {0, 1024, 1280, 900}}, // above it
        {{1920, 200, 1280, 1024}, {0, 0, 1280, 1024}},   // itself
    };
    for (const Row &row : rows)
        EXPECT_EQ(flipped(row.toolkit, main), row.global);
}

TEST(ScreenGeometry, pointsAreMeasuredFromTheBottom) {
    const QRectF main(0, 0, 1920, 1080);
    EXPECT_EQ(flipped(QPointF(1000, 380), main), QPointF(1000, 700));
    EXPECT_EQ(flipped(QPointF(0, 1080), main), QPointF(0, 0));
    EXPECT_EQ(flipped(QPointF(-5, 1100), main), QPointF(-5, -20));
    EXPECT_EQ(flipped(QPointF(2000, 300), QRectF(1920, 200, 1280, 1024)), QPointF(80, 924));
}

TEST(ScreenGeometry, noStrutsLeaveTheWholeMonitor) {
    EXPECT_EQ(areaWithoutStruts(QRect(1920, 0, 1280, 1024), whole, {}), QRect(1920, 0, 1280, 1024));
}

TEST(ScreenGeometry, aStrutCountsOnTheMonitorItIsOn) {
    const QRect left(0, 0, 1920, 1200);
    const QRect right(1920, 0, 1280, 1024);
    const QList<Strut> top = {{Strut::Edge::top, 30, 0, 1919}};
    EXPECT_EQ(areaWithoutStruts(left, whole, top), QRect(0, 30, 1920, 1170));
    EXPECT_EQ(areaWithoutStruts(right, whole, top), right);
    // A panel at the bottom of the lower monitor reserves from the bottom of the whole screen.
    const QList<Strut> bottom = {{Strut::Edge::bottom, 176 + 40, 1920, 3199}};
    EXPECT_EQ(areaWithoutStruts(left, whole, bottom), left);
    EXPECT_EQ(areaWithoutStruts(right, whole, bottom), QRect(1920, 0, 1280, 984));
}

TEST(ScreenGeometry, strutsOfAllEdgesAddUp) {
    const QSize one(1000, 800);
    const QList<Strut> all = {{Strut::Edge::left, 10, 0, 799},
                              {Strut::Edge::right, 20, 0, 799},
                              {Strut::Edge::top, 30, 0, 999},
                              {Strut::Edge::bottom, 40, 0, 999},
                              {Strut::Edge::top, 25, 0, 999}};
    EXPECT_EQ(areaWithoutStruts(QRect(0, 0, 1000, 800), one, all), QRect(10, 30, 970, 730));
}

TEST(ScreenGeometry, aStrutThatWouldLeaveNothingIsNotCounted) {
    // A panel at the left edge of the right monitor reserves all of the left one by the numbers.
    const QList<Strut> inner = {{Strut::Edge::left, 1960, 0, 1199}};
    EXPECT_EQ(areaWithoutStruts(QRect(0, 0, 1920, 1200), whole, inner), QRect(0, 0, 1920, 1200));
    EXPECT_EQ(areaWithoutStruts(QRect(1920, 0, 1280, 1024), whole, inner),
              QRect(1960, 0, 1240, 1024));
}

TEST(ScreenGeometry, theNumbersOfAPropertyBecomeStruts) {
    EXPECT_EQ(strutsOf({0, 0, 28, 0, 0, 0, 0, 0, 100, 1919, 0, 0}, whole),
              (QList<Strut>{{Strut::Edge::top, 28, 100, 1919}}));
    EXPECT_EQ(strutsOf({40, 0, 0, 50}, whole),
              (QList<Strut>{{Strut::Edge::left, 40, 0, 1199}, {Strut::Edge::bottom, 50, 0, 3199}}));
}

TEST(ScreenGeometry, foreignNumbersAreBounded) {
    EXPECT_TRUE(strutsOf({}, whole).isEmpty());
    EXPECT_TRUE(strutsOf({1, 2, 3}, whole).isEmpty());
    EXPECT_TRUE(strutsOf({0, 0, 0, 0}, whole).isEmpty());
    const auto huge = strutsOf({0, 0, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0xFFFFFFFF, 5, 0, 0}, whole);
    ASSERT_EQ(huge.size(), 1);
    EXPECT_EQ(huge[0], (Strut{Strut::Edge::top, 1200, 3199, 3199}));
    EXPECT_EQ(areaWithoutStruts(QRect(0, 0, 1920, 1200), whole, huge), QRect(0, 0, 1920, 1200));
}

TEST(ScreenGeometry, pixelsBecomePointsOnAScaledMonitor) {
    // 3840x2160 pixels at 1920,0 shown as 1920x1080 points, with a panel of 60 pixels at its top.
    EXPECT_EQ(partInPoints(QRect(1920, 60, 3840, 2100), QRect(1920, 0, 3840, 2160),
                           QRectF(1920, 0, 1920, 1080)),
              QRectF(1920, 30, 1920, 1050));
    EXPECT_EQ(partInPoints(QRect(-1500, 0, 1500, 900), QRect(-1500, 0, 1500, 1000),
                           QRectF(-1500, 0, 1000, 2000.0 / 3)),
              QRectF(-1500, 0, 1000, 600));
}
