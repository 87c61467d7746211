#pragma once

#include "PindleMac/platform/LoginItem.h"

#include <QString>

namespace pindle {

/// The login item as an autostart entry of the desktop (freedesktop.org Desktop Application
/// Autostart Specification). Its TryExec key lets a session pass it over once the program is
/// removed.
class AutostartLoginItem final : public LoginItem {
public:
    /// `executable` is the absolute path of the program; `folder` is where the session looks, by
    /// default $XDG_CONFIG_HOME/autostart.
    explicit AutostartLoginItem(QString executable, const QString &folder = defaultFolder());

    static QString defaultFolder();

    void registerItem() override;
    void unregisterItem() override;

private:
    QString executable_;
    QString folder_;
    QString path_;
};

/// `path` as the only argument of an Exec key (Desktop Entry Specification: quoting of the
/// argument, field codes, then escaping of the string).
QString desktopEntryExec(const QString &path);

/// `text` as the value of a string key (Desktop Entry Specification: escaping of the string).
QString desktopEntryString(const QString &text);

} // namespace pindle
