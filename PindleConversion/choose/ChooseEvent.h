#pragma once

#include <algorithm>
#include <vector>

#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/resolve/Resolve.h"

namespace pindle::conversion {

/// The event chosen among the dates and times of a text.
struct Choice {
    bool found = false;
    Notice notice = Notice::None;
    Day start;
    std::optional<Day> last;
    std::optional<int> startMinute;
    std::optional<int> endMinute; ///< 1440 and more: days after the start's
    std::string zone;
    int moreEvents = 0; ///< events of the text besides this one
    TokenSpan dateSpan; ///< empty when today was assumed
    TokenSpan timeSpan;
    TokenSpan endSpan;
    TokenSpan zoneSpan;
    EventKind kind = EventKind::None;
    std::vector<std::uint32_t> otherFields; ///< those that tell of other days only
    std::vector<std::uint32_t> laterFields; ///< lines below with a later hour of their own

    /// The token that the event's place and title are looked for around.
    std::uint32_t anchor() const { return dateSpan.empty() ? timeSpan.begin : dateSpan.begin; }

    /// Field number `field` is one of `otherFields`.
    bool isOfOther(std::uint32_t field) const {
        return std::find(otherFields.begin(), otherFields.end(), field) != otherFields.end();
    }
    /// Field number `field` is one of `laterFields`.
    bool isOfLater(std::uint32_t field) const {
        return std::find(laterFields.begin(), laterFields.end(), field) != laterFields.end();
    }
};

/// Sixth step: which of the dates and times make the event.
Choice chooseEvent(const Document &document, const Expressions &expressions,
                   const Reference &reference);

} // namespace pindle::conversion
