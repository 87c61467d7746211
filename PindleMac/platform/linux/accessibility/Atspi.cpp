#include "PindleMac/platform/linux/accessibility/Atspi.h"

namespace pindle::atspi {

namespace {

/// Reads one value of a basic type; nothing where the answer holds another.
template<class T> std::optional<T> basic(const BusMessage &answer, char type) {
    T value{};
    if (!answer || sd_bus_message_read_basic(answer.get(), type, &value) <= 0)
        return std::nullopt;
    return value;
}

bool enterVariant(const BusMessage &answer, const char *type) {
    return answer && sd_bus_message_enter_container(answer.get(), SD_BUS_TYPE_VARIANT, type) > 0;
}

} // namespace

std::vector<Ref> references(const BusMessage &answer) {
    std::vector<Ref> list;
    if (!answer || sd_bus_message_enter_container(answer.get(), SD_BUS_TYPE_ARRAY, "(so)") <= 0)
        return list;
    const char *service = nullptr;
    const char *path = nullptr;
    while (sd_bus_message_read(answer.get(), "(so)", &service, &path) > 0)
        list.push_back({service, path});
    return list;
}

std::optional<Ref> reference(const BusMessage &answer) {
    const char *service = nullptr;
    const char *path = nullptr;
    if (!answer || sd_bus_message_read(answer.get(), "(so)", &service, &path) <= 0)
        return std::nullopt;
    return Ref{service, path};
}

States states(const BusMessage &answer) {
    const void *words = nullptr;
    size_t size = 0;
    if (!answer || sd_bus_message_read_array(answer.get(), 'u', &words, &size) <= 0)
        return 0;
    const auto *word = static_cast<const uint32_t *>(words);
    return (size >= 4 ? word[0] : 0) | (size >= 8 ? States{word[1]} << 32U : 0);
}

std::vector<std::string> strings(const BusMessage &answer) {
    std::vector<std::string> list;
    if (!answer || sd_bus_message_enter_container(answer.get(), SD_BUS_TYPE_ARRAY, "s") <= 0)
        return list;
    const char *value = nullptr;
    while (sd_bus_message_read_basic(answer.get(), 's', &value) > 0)
        list.emplace_back(value);
    return list;
}

std::optional<uint32_t> unsignedNumber(const BusMessage &answer) {
    return basic<uint32_t>(answer, 'u');
}

std::optional<int32_t> number(const BusMessage &answer) {
    return basic<int32_t>(answer, 'i');
}

std::optional<QString> text(const BusMessage &answer) {
    const auto value = basic<const char *>(answer, 's');
    return value ? std::optional(QString::fromUtf8(*value)) : std::nullopt;
}

std::optional<std::pair<int32_t, int32_t>> span(const BusMessage &answer) {
    const auto start = number(answer);
    const auto end = number(answer);
    if (!start || !end)
        return std::nullopt;
    return std::minmax(*start, *end);
}

std::optional<int32_t> numberProperty(const BusMessage &answer) {
    return enterVariant(answer, "i") ? number(answer) : std::nullopt;
}

std::optional<QString> textProperty(const BusMessage &answer) {
    return enterVariant(answer, "s") ? text(answer) : std::nullopt;
}

std::optional<bool> boolProperty(const BusMessage &answer) {
    if (!enterVariant(answer, "b"))
        return std::nullopt;
    const auto value = basic<int>(answer, 'b');
    return value ? std::optional(*value != 0) : std::nullopt;
}

} // namespace pindle::atspi
