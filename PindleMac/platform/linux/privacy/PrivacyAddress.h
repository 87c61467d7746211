#pragma once

#include <QUrl>
#include <optional>

namespace pindle {

/// The pages of the privacy window, in the order of its tabs.
enum class PrivacyPage { calendars, accessibility };

/// The page a settings address means: one of the two privacy addresses, or the security pane's
/// file, which stands for the whole window. Absent for every other address.
std::optional<PrivacyPage> privacyPageFor(const QUrl &url);

} // namespace pindle
