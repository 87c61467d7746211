#include "PindleMac/views/SkeletonBar.h"

#include "PindleMac/views/Theme.h"

namespace pindle {

namespace {
// Larger than half the bar's height, hence capped there by the card.
constexpr double radius = 8;
constexpr double fillOpacity = 0.08;
} // namespace

SkeletonBar::SkeletonBar(int width)
    : Card(theme::black(fillOpacity), radius) {
    setFixedSize(width, thickness);
}

} // namespace pindle
