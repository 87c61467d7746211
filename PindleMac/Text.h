#pragma once

#include <QString>

namespace pindle {

/// `text` without the white space and line breaks at both its ends: Unicode space separators, tab,
/// U+000A to U+000D and U+0085.
QString trimmingWhitespaceAndNewlines(const QString &text);

} // namespace pindle
