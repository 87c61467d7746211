#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "PindleConversion/ConversionService.h"

namespace {

bool isReply(const std::string &reply) {
    const auto json = nlohmann::json::parse(reply, nullptr, false);
    return json.is_object() && json.contains("success") && json["success"].is_boolean();
}

/// The bytes as the text of an otherwise good request, so that the pipeline is reached.
std::string asRequest(std::string_view bytes) {
    const nlohmann::json request{{"text", bytes},
                                 {"referenceDate", "2026-03-11"},
                                 {"referenceTimezone", "Europe/London"},
                                 {"anonymized_key", "key"}};
    return request.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    if (!isReply(pindle::conversion::answer("text-conversion", bytes)) ||
        !isReply(pindle::conversion::answer("text-conversion", asRequest(bytes))))
        std::abort();
    return 0;
}
