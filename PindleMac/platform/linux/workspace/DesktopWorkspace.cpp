#include "PindleMac/platform/linux/workspace/DesktopWorkspace.h"

#include <QProcess>
#include <QStandardPaths>

namespace pindle {

namespace {

bool openInBrowser(const QUrl &url) {
    if (!url.isValid() || url.host().isEmpty())
        return false;
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty())
        return false;
    QProcess process;
    process.setProgram(opener);
    process.setArguments({QString::fromLatin1(url.toEncoded())});
    // The browser may become the opener's child and outlive this program: it gets none of its
    // descriptors.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
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
