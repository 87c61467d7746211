#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace pindle::shelltest {

/// The colour of this opacity, its channels from 0 to 1.
inline QColor colour(double red, double green, double blue, double opacity = 1) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                            static_cast<float>(blue), static_cast<float>(opacity));
}

/// One view by itself, drawn on nothing and enlarged: its pixels have the opacity of what was
/// painted, and edges can be measured in parts of a logical pixel. All places are in the view's
/// logical pixels.
class PartPicture {
public:
    enum class Children { drawn, leftOut };

    explicit PartPicture(QWidget &part, Children children = Children::leftOut)
        : image_(part.size() * scale, QImage::Format_ARGB32_Premultiplied)
        , size_(part.size()) {
        image_.setDevicePixelRatio(scale);
        image_.fill(Qt::transparent);
        QWidget::RenderFlags flags;
        flags.setFlag(QWidget::DrawChildren, children == Children::drawn);
        part.render(&image_, {}, {}, flags);
    }

    QColor at(double x, double y) const {
        return image_.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
    }

    /// The smallest and the largest of the radii of the shape's four corners, told by how far from
    /// the corner the shape begins on the diagonal. `fill` is the opacity inside.
    std::pair<double, double> cornerRadii(double fill) const {
        return std::minmax({radiusFrom(fill, false, false), radiusFrom(fill, true, false),
                            radiusFrom(fill, false, true), radiusFrom(fill, true, true)});
    }

    /// What bounds the dark pixels, text and symbols, within a part of the view.
    QRectF inkWithin(const QRectF &part) const {
        const QRect pixels = QRectF(part.topLeft() * scale, part.size() * scale).toRect();
        QRect ink;
        for (int y = pixels.top(); y <= pixels.bottom(); ++y)
            for (int x = pixels.left(); x <= pixels.right(); ++x)
                if (isInk(image_.pixelColor(x, y)))
                    ink |= QRect(x, y, 1, 1);
        return {QPointF(ink.topLeft()) / scale, QSizeF(ink.size()) / scale};
    }
    QRectF ink() const { return inkWithin(QRectF(QPointF(), QSizeF(size_))); }

    /// The first stretch of a column or a row of pixels that has another colour than `ground`.
    std::pair<double, double> firstStretchDown(double x, const QColor &ground) const {
        return firstStretch(image_.height(), ground, [&](int step) {
            return image_.pixelColor(static_cast<int>(x * scale), step);
        });
    }
    std::pair<double, double> firstStretchAcross(double y, const QColor &ground) const {
        return firstStretch(image_.width(), ground, [&](int step) {
            return image_.pixelColor(step, static_cast<int>(y * scale));
        });
    }

private:
    static constexpr int scale = 8;

    static bool isInk(const QColor &pixel) {
        constexpr int half = 128;
        constexpr int white = 255;
        return white - pixel.alpha() * (white - pixel.red()) / white < half;
    }

    double radiusFrom(double fill, bool right, bool bottom) const {
        const int steps = std::min(image_.width(), image_.height()) / 2;
        double outside = 0;
        for (int step = 0; step < steps; ++step) {
            const int x = right ? image_.width() - 1 - step : step;
            const int y = bottom ? image_.height() - 1 - step : step;
            const double opacity = static_cast<double>(image_.pixelColor(x, y).alphaF());
            const double share = opacity / fill;
            // An opacity is kept as one of 256 steps.
            outside += share > 0.95 ? 0 : 1 - share;
        }
        return outside / scale / (1 - std::sqrt(0.5));
    }

    template<class Pixel>
    static std::pair<double, double> firstStretch(int steps, const QColor &ground, Pixel pixel) {
        const auto differs = [&](int step) {
            // Neither outside the shape nor on its softened edge.
            const QColor seen = pixel(step);
            return seen.alpha() >= ground.alpha() && seen != ground;
        };
        int first = 0;
        while (first < steps && !differs(first))
            ++first;
        int last = first;
        while (last < steps && differs(last))
            ++last;
        return {static_cast<double>(first) / scale, static_cast<double>(last) / scale};
    }

    QImage image_;
    QSize size_;
};

/// A translucent colour is kept with few bits to a channel, hence the tolerance.
inline void expectColour(const QColor &seen, const QColor &expected) {
    EXPECT_NEAR(seen.alphaF(), expected.alphaF(), 0.005);
    const double tolerance = 0.006 / static_cast<double>(expected.alphaF());
    EXPECT_NEAR(seen.redF(), expected.redF(), tolerance);
    EXPECT_NEAR(seen.greenF(), expected.greenF(), tolerance);
    EXPECT_NEAR(seen.blueF(), expected.blueF(), tolerance);
}

/// Whether all four corners of a shape of this opacity have this radius.
inline void expectRadius(QWidget &part, double radius, double fill) {
    constexpr double tolerance = 0.35;
    const auto [smallest, largest] = PartPicture(part).cornerRadii(fill);
    EXPECT_NEAR(smallest, radius, tolerance);
    EXPECT_NEAR(largest, radius, tolerance);
}

/// The place of a view in one that it lies in.
inline QRect placeIn(const QWidget &outer, const QWidget &part) {
    return {part.mapTo(&outer, QPoint()), part.size()};
}

/// Free room between two views of one parent, the second below or to the right of the first.
inline int gapDown(const QWidget &upper, const QWidget &lower) {
    return lower.mapTo(lower.window(), QPoint()).y() -
           upper.mapTo(upper.window(), QPoint(0, upper.height())).y();
}
inline int gapAcross(const QWidget &left, const QWidget &right) {
    return right.mapTo(right.window(), QPoint()).x() -
           left.mapTo(left.window(), QPoint(left.width(), 0)).x();
}

} // namespace pindle::shelltest
