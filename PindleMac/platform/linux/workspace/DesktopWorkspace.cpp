#include "PindleMac/platform/linux/workspace/DesktopWorkspace.h"

#include "PindleMac/platform/linux/workspace/StartProgram.h"

#include <QStandardPaths>

namespace pindle {

namespace {

bool openInBrowser(const QUrl &url) {
    if (!url.isValid() || url.host().isEmpty())
        return false;
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty())
        return false;
    return startProgram(opener, {QString::fromLatin1(url.toEncoded())});
}

} // namespace

DesktopWorkspace::DesktopWorkspace(SettingsOpener settingsOpener)
    : settingsOpener_(std::move(settingsOpener)) {}

bool DesktopWorkspace::open(const QUrl &url) {
    if (url.scheme() == QStringLiteral("https"))
        return openInBrowser(url);
    if (url.scheme() == QStringLiteral("x-apple.systempreferences") || url.isLocalFile())
        return settingsOpener_ && settingsOpener_(url);
    return false;
}

} // namespace pindle
