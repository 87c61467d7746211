#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pindle::conversion {

/// A highlighted text and the local date and zone of the person who highlighted it.
struct Request {
    std::string_view text;              ///< UTF-8; invalid bytes are read as spaces
    std::string_view referenceDate;     ///< "yyyy-MM-dd", today for that person
    std::string_view referenceTimezone; ///< tz database identifier; unknown ones only lose hints
};

/// The eight fields of an event draft; "" means that the text does not say.
struct Draft {
    std::string title;
    std::string description;
    std::string location;
    std::string startDate; ///< "yyyy-MM-dd"
    std::string endDate;   ///< "yyyy-MM-dd", the last day, "" for the start's own day
    std::string startTime; ///< "HH:mm", "" for the whole day
    std::string endTime;   ///< "HH:mm", "" when the text names no end
    std::string timeZone;  ///< tz database identifier, "" when the text names none

    bool operator==(const Draft &) const = default;
};

/// The fields that are read out of the text, for `Evidence`.
enum class Fact : std::uint8_t { Title, Location, Date, Time, End, Zone };

/// Where in `Reply::cleanText` a value was read: bytes from `begin` up to `end`.
struct Evidence {
    Fact fact;
    std::uint32_t begin;
    std::uint32_t end;
};

/// The outcome of one conversion.
struct Reply {
    std::optional<Draft> draft;     ///< absent when the text holds no event
    std::string userMessage;        ///< one sentence when something was assumed, else ""
    std::string error;              ///< one sentence when there is no draft, else ""
    std::string cleanText;          ///< the text the evidence points into
    std::vector<Evidence> evidence; ///< for every value read; the user's own zone is a default
};

/// Reads one event out of a text. Never throws for any bytes, keeps no state, any thread.
Reply convert(const Request &request);

} // namespace pindle::conversion
