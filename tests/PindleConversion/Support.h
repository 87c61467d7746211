#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "PindleConversion/ConversionService.h"
#include "PindleConversion/Convert.h"

namespace pindle::conversion::test {

inline constexpr std::string_view kWednesday = "2026-03-11";

inline Reply convertText(std::string_view text, std::string_view zone = "Europe/London",
                         std::string_view date = kWednesday) {
    return convert({text, date, zone});
}

/// The draft, or an empty one when the text was refused.
inline Draft draftOf(std::string_view text, std::string_view zone = "Europe/London",
                     std::string_view date = kWednesday) {
    return convertText(text, zone, date).draft.value_or(Draft{});
}

inline std::string requestFor(std::string_view text) {
    const nlohmann::json request{{"text", text},
                                 {"referenceDate", kWednesday},
                                 {"referenceTimezone", "Europe/London"},
                                 {"anonymized_key", "key"}};
    return request.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// Whether a reply is what a client may rely on.
inline bool isValidReply(const std::string &text) {
    const auto reply = nlohmann::json::parse(text, nullptr, false);
    if (!reply.is_object() || !reply.contains("success") || !reply["success"].is_boolean())
        return false;
    if (!reply["success"].get<bool>())
        return reply.contains("error") && reply["error"].is_string() &&
               !reply["error"].get<std::string>().empty() && !reply.contains("details");
    for (const char *key : {"title", "description", "location", "startDate", "endDate", "startTime",
                            "endTime", "timeZone"})
        if (!reply["details"].contains(key) || !reply["details"][key].is_string())
            return false;
    return reply["details"].size() == 8 && !reply.contains("error");
}

} // namespace pindle::conversion::test
