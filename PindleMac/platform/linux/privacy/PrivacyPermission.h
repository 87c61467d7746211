#pragma once

#include "PindleMac/platform/linux/privacy/DesktopSettings.h"

#include <functional>

namespace pindle {

class AccessDecisions;
class AtspiAccessibility;

/// One permission as a page of the privacy window shows it. Plain text throughout.
struct PrivacyPermission {
    struct State {
        bool granted = false;
        QString text; ///< one sentence
    };

    QString title;                      ///< of the page
    QString purpose;                    ///< what it lets the program do
    QString choice;                     ///< label of the check box
    QString note;                       ///< what a change means besides
    std::function<State()> state;       ///< as it is now; never blocks
    std::function<void(bool)> change;   ///< grants or revokes; may take a moment to be seen
    std::function<void()> openSettings; ///< the desktop's own; empty when there are none
};

/// Whether this program may add events. `decisions` outlives the permission.
PrivacyPermission calendarPermission(AccessDecisions &decisions);
/// Whether the desktop's accessibility bus is on. `accessibility` outlives the permission.
PrivacyPermission accessibilityPermission(AtspiAccessibility &accessibility);

} // namespace pindle
