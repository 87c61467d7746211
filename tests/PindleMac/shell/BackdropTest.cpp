#include "PindleMac/views/Backdrop.h"
#include "PindleMac/views/Card.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace pindle {
namespace {

/// A picture to draw backdrops into, at a scale.
class Canvas {
public:
    explicit Canvas(double scale = 1)
        : image_(400, 400, QImage::Format_ARGB32_Premultiplied) {
        image_.setDevicePixelRatio(scale);
        image_.fill(Qt::transparent);
    }

    /// Draws a rectangle of that size; whether its painting was needed.
    bool draw(Backdrop &backdrop, QSize size, const QColor &colour = Qt::red) {
        bool painted = false;
        QPainter painter(&image_);
        backdrop.draw(painter, size, [&](QPainter &into) {
            painted = true;
            into.fillRect(QRect(QPoint(), size), colour);
        });
        return painted;
    }
    QColor at(int x, int y) const { return image_.pixelColor(x, y); }

private:
    QImage image_;
};

TEST(Backdrop, isPaintedOnceForTheTwoSizesUsedLast) {
    Canvas canvas;
    Backdrop backdrop;
    EXPECT_TRUE(canvas.draw(backdrop, {40, 30}));
    EXPECT_TRUE(canvas.draw(backdrop, {40, 60}));
    EXPECT_FALSE(canvas.draw(backdrop, {40, 30}));
    EXPECT_FALSE(canvas.draw(backdrop, {40, 60}));
    EXPECT_TRUE(canvas.draw(backdrop, {40, 90}));
    EXPECT_FALSE(canvas.draw(backdrop, {40, 60}));
    EXPECT_TRUE(canvas.draw(backdrop, {40, 30}));
}

TEST(Backdrop, drawsWhatWasPaintedAtItsSize) {
    Canvas canvas;
    Backdrop backdrop;
    canvas.draw(backdrop, {40, 30});
    EXPECT_EQ(canvas.at(39, 29), QColor(Qt::red));
    EXPECT_EQ(canvas.at(40, 29).alpha(), 0);
    EXPECT_EQ(canvas.at(39, 30).alpha(), 0);
}

TEST(Backdrop, isPaintedAfreshOnceForgotten) {
    Canvas canvas;
    Backdrop backdrop;
    canvas.draw(backdrop, {40, 30});
    backdrop.forget();
    EXPECT_TRUE(canvas.draw(backdrop, {40, 30}, Qt::blue));
    EXPECT_EQ(canvas.at(5, 5), QColor(Qt::blue));
}

TEST(Backdrop, isPaintedInTheResolutionOfADenserScreen) {
    Backdrop backdrop;
    Canvas().draw(backdrop, {40, 30});
    Canvas dense(2);
    EXPECT_TRUE(dense.draw(backdrop, {40, 30}));
    EXPECT_EQ(dense.at(79, 59), QColor(Qt::red));
    EXPECT_EQ(dense.at(80, 59).alpha(), 0);
}

TEST(Backdrop, isPaintedInPlaceAtAFractionalScale) {
    Canvas canvas(1.5);
    Backdrop backdrop;
    EXPECT_TRUE(canvas.draw(backdrop, {40, 30}));
    EXPECT_TRUE(canvas.draw(backdrop, {40, 30}));
    EXPECT_EQ(canvas.at(59, 44), QColor(Qt::red));
}

TEST(Backdrop, isPaintedInPlaceWhereItIsDrawnEnlarged) {
    QImage image(400, 400, QImage::Format_ARGB32_Premultiplied);
    Backdrop backdrop;
    for (int round = 0; round < 2; ++round) {
        QPainter painter(&image);
        painter.scale(4, 4);
        int painted = 0;
        backdrop.draw(painter, {40, 30}, [&](QPainter &) { ++painted; });
        EXPECT_EQ(painted, 1);
    }
}

TEST(Card, showsANewFillAtOnce) {
    Card card(Qt::red, 4);
    card.resize(40, 30);
    EXPECT_EQ(card.grab().toImage().pixelColor(20, 15), QColor(Qt::red));
    card.setFill(Qt::blue);
    EXPECT_EQ(card.grab().toImage().pixelColor(20, 15), QColor(Qt::blue));
}

} // namespace
} // namespace pindle
