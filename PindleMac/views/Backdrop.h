#pragma once

#include <QPixmap>
#include <array>
#include <functional>

class QPainter;

namespace pindle {

/// A picture that is painted alike each time, kept in the two sizes it was last painted in, as the
/// panel goes to and fro between waiting and a draft.
/// Large soft shapes are the dearest part of a frame: the toolkit hands each of them over to other
/// threads and waits for them.
class Backdrop {
public:
    using Paint = std::function<void(QPainter &painter)>;

    /// Draws what `paint` paints into a rectangle of that size, in logical pixels, at the origin.
    void draw(QPainter &painter, QSize size, const Paint &paint);
    /// To be called when `paint` would paint something else.
    void forget() { pictures_ = {}; }

private:
    std::array<QPixmap, 2> pictures_; ///< the one used last comes first
};

} // namespace pindle
