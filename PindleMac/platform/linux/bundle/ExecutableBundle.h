#pragma once

#include "PindleMac/platform/Bundle.h"

namespace pindle {

/// The running executable: its version is compiled in.
class ExecutableBundle final : public Bundle {
public:
    QVariant objectForInfoDictionaryKey(const QString &key) override;
    QString bundleIdentifier() override;
    QString bundlePath() override;
};

} // namespace pindle
