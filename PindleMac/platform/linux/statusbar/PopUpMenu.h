#pragma once

#include "PindleMac/platform/StatusBar.h"

#include <QRect>

namespace pindle {

/// Opens `menu` below `item`, or above it where the item is in the lower half of its screen; the
/// rectangle is in the toolkit's coordinates. It goes when it closes. Main thread.
void popUpMenu(const Menu &menu, const QRect &item);

/// Command is the key that means it on this desktop: Control, as in Control+C for copying.
QString shortcutText(const QString &keyEquivalent);

} // namespace pindle
