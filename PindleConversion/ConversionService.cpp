#include "PindleConversion/ConversionService.h"

#include <array>
#include <exception>
#include <random>

#include <nlohmann/json.hpp>

#include "PindleConversion/Convert.h"

namespace pindle::conversion {

namespace {

using Json = nlohmann::json;

std::string dump(const Json &json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string failure(std::string_view sentence) {
    return dump(Json{{"success", false}, {"error", sentence}});
}

/// 128 random bits as hexadecimal digits.
std::string freshKey() {
    constexpr int kWords = 4;
    constexpr int kDigitsPerWord = 8;
    constexpr std::string_view digits = "0123456789abcdef";
    std::random_device device;
    std::string key;
    for (int i = 0; i < kWords; ++i) {
        auto word = static_cast<std::uint32_t>(device());
        for (int k = 0; k < kDigitsPerWord; ++k, word >>= 4)
            key += digits[word & 0xF];
    }
    return key;
}

/// The text of a required member, or null.
const std::string *member(const Json &request, const char *name) {
    const auto found = request.find(name);
    return found == request.end() ? nullptr : found->get_ptr<const std::string *>();
}

std::string replyText(const Reply &reply) {
    if (!reply.draft)
        return failure(reply.error);
    const Draft &draft = *reply.draft;
    Json json{{"success", true},
              {"details",
               {{"title", draft.title},
                {"description", draft.description},
                {"location", draft.location},
                {"startDate", draft.startDate},
                {"endDate", draft.endDate},
                {"startTime", draft.startTime},
                {"endTime", draft.endTime},
                {"timeZone", draft.timeZone}}}};
    if (!reply.userMessage.empty())
        json["user_message"] = reply.userMessage;
    return dump(json);
}

std::string convertBody(std::string_view body, bool needsKey) {
    if (body.size() > kLargestBody)
        return failure("The selected text is too long.");
    const Json request = Json::parse(body, nullptr, false);
    if (request.is_discarded() || !request.is_object())
        return failure("The request is not a valid JSON object.");
    const std::string *text = member(request, "text");
    const std::string *date = member(request, "referenceDate");
    const std::string *zone = member(request, "referenceTimezone");
    if (!text || !date || !zone || (needsKey && !member(request, "anonymized_key")))
        return failure("The request lacks a member or one is no text.");
    return replyText(convert({*text, *date, *zone}));
}

template<typename Work> std::string guarded(Work work) noexcept {
    try {
        return work();
    } catch (const std::exception &) {
        return R"({"success":false,"error":"The text could not be converted."})";
    }
}

} // namespace

std::string answer(std::string_view endpoint, std::string_view requestBody) {
    if (endpoint == "on-install")
        return guarded([] { return dump(Json{{"anonymized_key", freshKey()}}); });
    if (endpoint == "text-conversion")
        return guarded([&] { return convertBody(requestBody, true); });
    return guarded([] { return failure("There is no such endpoint."); });
}

std::string answerLine(std::string_view requestBody) {
    return guarded([&] { return convertBody(requestBody, false); });
}

} // namespace pindle::conversion
