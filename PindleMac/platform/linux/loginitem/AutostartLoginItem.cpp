#include "PindleMac/platform/linux/loginitem/AutostartLoginItem.h"

#include "PindleMac/platform/PlatformError.h"
#include "PindleMac/platform/linux/files/PrivateFile.h"

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace pindle {

namespace {

[[noreturn]] void refuse() {
    throw PlatformError(
        QStringLiteral("The list of programs that start at login could not be changed."));
}

bool isControl(QChar c) {
    return c.category() == QChar::Other_Control;
}

} // namespace

QString desktopEntryExec(const QString &path) {
    QString quoted;
    for (const QChar c : path) {
        if (c == QLatin1Char('\\')) {
            // Escaped for the argument, and each of the two once more for the string value.
            quoted += QStringLiteral("\\\\\\\\");
        } else if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$')) {
            quoted += QStringLiteral("\\\\") + c;
        } else if (c == QLatin1Char('%')) {
            quoted += QStringLiteral("%%");
        } else {
            quoted += c;
        }
    }
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString desktopEntryString(const QString &text) {
    return QString(text).replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
}

QString AutostartLoginItem::defaultFolder() {
    return configHome() + QStringLiteral("/autostart");
}

AutostartLoginItem::AutostartLoginItem(QString executable, const QString &folder)
    : executable_(std::move(executable))
    , folder_(folder)
    , path_(folder + QStringLiteral("/app.pindle.Pindle.desktop")) {}

void AutostartLoginItem::registerItem() {
    // A line break in the path would become another key of the entry.
    if (executable_.isEmpty() || std::any_of(executable_.cbegin(), executable_.cend(), isControl))
        refuse();
    const QString entry = QStringLiteral("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Name=Pindle\n"
                                         "TryExec=%1\n"
                                         "Exec=%2\n"
                                         "X-GNOME-Autostart-enabled=true\n")
                              .arg(desktopEntryString(executable_), desktopEntryExec(executable_));
    removeAbandonedFiles(folder_);
    if (makePrivateFolder(folder_) || replaceFile(path_, entry.toUtf8(), Durability::synced))
        refuse();
}

void AutostartLoginItem::unregisterItem() {
    if (::unlink(QFile::encodeName(path_).constData()) != 0 && errno != ENOENT)
        refuse();
}

} // namespace pindle
