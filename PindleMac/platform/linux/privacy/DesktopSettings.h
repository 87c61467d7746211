#pragma once

#include "PindleMac/platform/linux/privacy/PrivacyAddress.h"

#include <QStringList>
#include <functional>
#include <optional>

namespace pindle {

/// A program of the desktop's own settings, as to be started.
struct SettingsProgram {
    QString path;
    QStringList arguments;
    bool operator==(const SettingsProgram &) const = default;
};

/// The absolute path of a program by its name; empty when it is not installed.
using FindProgram = std::function<QString(const QString &name)>;

/// Where the desktop itself keeps what the page is about. Programs of the running desktop
/// (`desktops`, the parts of $XDG_CURRENT_DESKTOP) come before those of others. Absent when none is
/// installed.
std::optional<SettingsProgram> desktopSettings(PrivacyPage page, const QStringList &desktops,
                                               const FindProgram &find);

/// The same for the desktop this process runs on.
std::optional<SettingsProgram> desktopSettings(PrivacyPage page);

} // namespace pindle
