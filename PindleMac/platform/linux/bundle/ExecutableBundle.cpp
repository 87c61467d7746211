#include "PindleMac/platform/linux/bundle/ExecutableBundle.h"

#include <QCoreApplication>

namespace pindle {

QVariant ExecutableBundle::objectForInfoDictionaryKey(const QString &key) {
    if (key == QStringLiteral("CFBundleShortVersionString"))
        return QStringLiteral(PINDLE_VERSION);
    return {};
}

QString ExecutableBundle::bundleIdentifier() {
    return QStringLiteral("app.pindle.Pindle");
}

QString ExecutableBundle::bundlePath() {
    return QCoreApplication::applicationDirPath();
}

} // namespace pindle
