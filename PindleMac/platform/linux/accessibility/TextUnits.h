#pragma once

#include "PindleMac/platform/Accessibility.h"

#include <QString>
#include <optional>

/// Toolkits count a text in different units; these turn what they say into UTF-16.
namespace pindle::textunits {

/// The placeholder of an object embedded in a text.
inline constexpr QChar kObject{u'\uFFFC'};

/// Without the U+FEFF that one engine puts after each character beyond the Basic Multilingual Plane
/// so that its code points count as its UTF-16 units; every other U+FEFF stays.
QString withoutPadding(const QString &text);

/// The range of `selected` in a text that begins with `before`, both as the toolkit gave them.
CFRange rangeAfter(const QString &before, const QString &selected);

/// The toolkit's offset of the character at `index` of `text`, which the toolkit gave for offsets
/// `start` to `end`: whether it counts code points or UTF-16 units shows in the lengths.
qint64 offsetOf(const QString &text, qsizetype index, qint64 start, qint64 end);

} // namespace pindle::textunits
