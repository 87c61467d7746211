#pragma once

#include <QString>
#include <QVariant>

namespace pindle {

/// What the program knows of itself.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// For "CFBundleShortVersionString" the version ("0.1.0"); an invalid value when there is none.
    virtual QVariant objectForInfoDictionaryKey(const QString &key) = 0;
    /// "app.pindle.Pindle"; empty when the build has none.
    virtual QString bundleIdentifier() = 0;
    /// Absolute folder of the running program.
    virtual QString bundlePath() = 0;
};

} // namespace pindle
