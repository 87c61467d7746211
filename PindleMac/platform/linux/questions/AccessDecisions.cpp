#include "PindleMac/platform/linux/questions/AccessDecisions.h"

#include "PindleMac/platform/linux/files/PrivateFile.h"

namespace pindle {

namespace {
const QString calendarKey = QStringLiteral("calendar");
const QString deniedValue = QStringLiteral("denied");
const QString writeOnlyValue = QStringLiteral("writeOnly");
} // namespace

QString AccessDecisions::defaultPath() {
    return configHome() + QStringLiteral("/pindle/permissions.json");
}

std::optional<AccessDecisions::Decision> AccessDecisions::calendar() {
    const QString value = file_.value(calendarKey).toString();
    if (value == writeOnlyValue)
        return Decision::writeOnly;
    if (value == deniedValue)
        return Decision::denied;
    return std::nullopt;
}

void AccessDecisions::setCalendar(Decision decision) {
    file_.set(calendarKey, decision == Decision::writeOnly ? writeOnlyValue : deniedValue);
}

void AccessDecisions::forgetCalendar() {
    file_.set(calendarKey, QJsonValue(QJsonValue::Undefined));
}

} // namespace pindle
