#include "PindleMac/platform/linux/userdefaults/JsonUserDefaults.h"

#include "PindleMac/platform/linux/files/PrivateFile.h"

namespace pindle {

QString JsonUserDefaults::defaultPath() {
    return configHome() + QStringLiteral("/pindle/defaults.json");
}

std::optional<QString> JsonUserDefaults::string(const QString &key) {
    const QJsonValue value = file_.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

bool JsonUserDefaults::boolean(const QString &key) {
    return file_.value(key).toBool(false);
}

void JsonUserDefaults::setString(const QString &key, const QString &value) {
    file_.set(key, value);
}

void JsonUserDefaults::setBoolean(const QString &key, bool value) {
    file_.set(key, value);
}

} // namespace pindle
