#pragma once

#include "PindleMac/platform/UserDefaults.h"
#include "PindleMac/platform/linux/files/JsonFile.h"

namespace pindle {

/// The user's values in one JSON file that only they can read. Values of foreign keys are kept.
/// A file that holds no JSON object is kept beside it as "<name>.damaged-<time>", and the values
/// start afresh.
class JsonUserDefaults final : public UserDefaults {
public:
    /// `path` is the file; by default $XDG_CONFIG_HOME/pindle/defaults.json. Nothing is read or
    /// made before the first use.
    explicit JsonUserDefaults(const QString &path = defaultPath())
        : file_(path) {}

    static QString defaultPath();

    std::optional<QString> string(const QString &key) override;
    bool boolean(const QString &key) override;
    void setString(const QString &key, const QString &value) override;
    void setBoolean(const QString &key, bool value) override;

private:
    JsonFile file_;
};

} // namespace pindle
