#pragma once

#include "PindleMac/views/Card.h"

namespace pindle {

/// A grey bar where a line of text will be.
class SkeletonBar : public Card {
    Q_OBJECT
public:
    /// Width in logical pixels.
    explicit SkeletonBar(int width);

    static constexpr int thickness = 12;
};

} // namespace pindle
