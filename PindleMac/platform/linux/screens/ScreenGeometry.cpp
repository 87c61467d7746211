#include "PindleMac/platform/linux/screens/ScreenGeometry.h"

#include <algorithm>
#include <array>

namespace pindle {
namespace {

constexpr std::array edges = {Strut::Edge::left, Strut::Edge::right, Strut::Edge::top,
                              Strut::Edge::bottom};

int bounded(quint32 number, int limit) {
    return static_cast<int>(std::min<quint32>(number, static_cast<quint32>(limit)));
}

QRect reserved(const Strut &strut, QSize whole) {
    const int length = strut.last - strut.first + 1;
    switch (strut.edge) {
    case Strut::Edge::left:
        return {0, strut.first, strut.width, length};
    case Strut::Edge::right:
        return {whole.width() - strut.width, strut.first, strut.width, length};
    case Strut::Edge::top:
        return {strut.first, 0, length, strut.width};
    case Strut::Edge::bottom:
        return {strut.first, whole.height() - strut.width, length, strut.width};
    }
    return {};
}

QRect cut(QRect area, const Strut &strut, const QRect &taken) {
    switch (strut.edge) {
    case Strut::Edge::left:
        area.setLeft(std::max(area.left(), taken.right() + 1));
        break;
    case Strut::Edge::right:
        area.setRight(std::min(area.right(), taken.left() - 1));
        break;
    case Strut::Edge::top:
        area.setTop(std::max(area.top(), taken.bottom() + 1));
        break;
    case Strut::Edge::bottom:
        area.setBottom(std::min(area.bottom(), taken.top() - 1));
        break;
    }
    return area;
}

} // namespace

QList<Strut> strutsOf(const QList<quint32> &numbers, QSize wholeScreen) {
    const bool partial = numbers.size() == 12;
    if (!partial && numbers.size() != 4)
        return {};
    QList<Strut> struts;
    for (qsizetype i = 0; i < 4; ++i) {
        const Strut::Edge edge = edges[std::size_t(i)];
        const bool upright = edge == Strut::Edge::left || edge == Strut::Edge::right;
        const int length = upright ? wholeScreen.height() : wholeScreen.width();
        const int width = bounded(numbers[i], upright ? wholeScreen.width() : wholeScreen.height());
        if (width == 0)
            continue;
        const int first = partial ? bounded(numbers[4 + 2 * i], length - 1) : 0;
        const int last = partial ? bounded(numbers[5 + 2 * i], length - 1) : length - 1;
        struts.append({edge, width, first, std::max(first, last)});
    }
    return struts;
}

QRect areaWithoutStruts(QRect monitor, QSize wholeScreen, const QList<Strut> &struts) {
    QRect area = monitor;
    for (const Strut &strut : struts) {
        const QRect taken = reserved(strut, wholeScreen);
        if (!taken.intersects(monitor))
            continue;
        if (const QRect rest = cut(area, strut, taken); rest.isValid())
            area = rest;
    }
    return area;
}

QRectF partInPoints(QRect part, QRect pixels, QRectF frame) {
    const qreal x = frame.width() / pixels.width();
    const qreal y = frame.height() / pixels.height();
    return {frame.left() + (part.left() - pixels.left()) * x,
            frame.top() + (part.top() - pixels.top()) * y, part.width() * x, part.height() * y};
}

QRectF flipped(QRectF rectangle, QRectF mainFrame) {
    return {rectangle.left() - mainFrame.left(),
            mainFrame.top() + mainFrame.height() - rectangle.top() - rectangle.height(),
            rectangle.width(), rectangle.height()};
}

QPointF flipped(QPointF point, QRectF mainFrame) {
    return {point.x() - mainFrame.left(), mainFrame.top() + mainFrame.height() - point.y()};
}

} // namespace pindle
