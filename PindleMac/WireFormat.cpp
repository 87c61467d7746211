#include "PindleMac/APIClient.h"

#include <nlohmann/json.hpp>

namespace pindle {

namespace {

using nlohmann::json;

std::string utf8(const QString &text) {
    return text.toStdString();
}

QByteArray compact(const json &object) {
    return QByteArray::fromStdString(object.dump());
}

[[noreturn]] void failDecoding(const char *key, const char *what) {
    throw DecodingError(QStringLiteral("The reply of the conversion service could not be read: "
                                       "“%1” %2.")
                            .arg(QLatin1String(key), QLatin1String(what)));
}

json parseObject(const QByteArray &body) {
    json object = json::parse(body.cbegin(), body.cend(), nullptr, /*allow_exceptions=*/false);
    if (!object.is_object()) {
        throw DecodingError(
            QStringLiteral("The reply of the conversion service could not be read: it is not a "
                           "JSON object."));
    }
    return object;
}

QString text(const json &value, const char *key) {
    if (!value.is_string())
        failDecoding(key, "is not a text");
    return QString::fromStdString(value.get_ref<const std::string &>());
}

QString requiredText(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end())
        failDecoding(key, "is missing");
    return text(*found, key);
}

std::optional<QString> optionalText(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null())
        return std::nullopt;
    return text(*found, key);
}

bool requiredBoolean(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end())
        failDecoding(key, "is missing");
    if (!found->is_boolean())
        failDecoding(key, "is not true or false");
    return found->get<bool>();
}

CalendarEventDetails eventDetails(const json &object) {
    // Braced initialisation evaluates in order, so the first missing key is the one reported.
    return CalendarEventDetails{
        requiredText(object, "title"),    requiredText(object, "description"),
        requiredText(object, "location"), requiredText(object, "startDate"),
        requiredText(object, "endDate"),  requiredText(object, "startTime"),
        requiredText(object, "endTime"),  requiredText(object, "timeZone"),
    };
}

std::optional<CalendarEventDetails> optionalDetails(const json &object, const char *key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null())
        return std::nullopt;
    if (!found->is_object())
        failDecoding(key, "is not an object");
    return eventDetails(*found);
}

} // namespace

QByteArray encode(const InstallRequest &request) {
    json object = {{"browser", utf8(request.browser)},
                   {"extension_version", utf8(request.extensionVersion)}};
    if (request.email)
        object["email"] = utf8(*request.email);
    return compact(object);
}

QByteArray encode(const TextConversionRequest &request) {
    return compact({{"text", utf8(request.text)},
                    {"referenceDate", utf8(request.referenceDate)},
                    {"referenceTimezone", utf8(request.referenceTimezone)},
                    {"anonymized_key", utf8(request.anonymizedKey)}});
}

QByteArray encode(const CalendarEventDetails &details) {
    return compact({{"title", utf8(details.title)},
                    {"description", utf8(details.description)},
                    {"location", utf8(details.location)},
                    {"startDate", utf8(details.startDate)},
                    {"endDate", utf8(details.endDate)},
                    {"startTime", utf8(details.startTime)},
                    {"endTime", utf8(details.endTime)},
                    {"timeZone", utf8(details.timeZone)}});
}

InstallResponse decodeInstallResponse(const QByteArray &body) {
    return {requiredText(parseObject(body), "anonymized_key")};
}

TextConversionResponse decodeTextConversionResponse(const QByteArray &body) {
    const json object = parseObject(body);
    return {requiredBoolean(object, "success"), optionalDetails(object, "details"),
            optionalText(object, "user_message"), optionalText(object, "error")};
}

CalendarEventDetails decodeCalendarEventDetails(const QByteArray &body) {
    return eventDetails(parseObject(body));
}

} // namespace pindle
