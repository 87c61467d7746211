#pragma once

#include "PindleMac/platform/linux/accessibility/BusConnection.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The part of the AT-SPI 2 protocol that is needed to find and read a text.
namespace pindle::atspi {

/// An accessible object: unique bus name of its application, and path.
struct Ref {
    std::string service;
    std::string path;
    bool operator==(const Ref &) const = default;
};

inline constexpr char kRoot[] = "/org/a11y/atspi/accessible/root";
inline constexpr char kAccessible[] = "org.a11y.atspi.Accessible";
inline constexpr char kApplication[] = "org.a11y.atspi.Application";
inline constexpr char kCollection[] = "org.a11y.atspi.Collection";
inline constexpr char kHyperlink[] = "org.a11y.atspi.Hyperlink";
inline constexpr char kHypertext[] = "org.a11y.atspi.Hypertext";
inline constexpr char kText[] = "org.a11y.atspi.Text";

/// Numbers of states and roles, as the protocol fixes them.
enum State : unsigned { kActive = 1, kFocused = 12, kShowing = 25, kManagesDescendants = 31 };
enum Role : uint32_t {
    kRoleListItem = 32,
    kRolePasswordText = 40,
    kRoleTableCell = 56,
    kRoleParagraph = 73,
    kRoleHeading = 83,
    kRoleSection = 85,
    kRoleForm = 87,
    kRoleTableRow = 90,
    kRoleBlockQuote = 105,
    kRoleArticle = 109,
};

/// States as the protocol sends them: bit n is state n.
using States = uint64_t;
inline bool has(States states, State state) {
    return (states >> state & 1U) != 0;
}

/// Reading of answers; each is empty or absent where the answer was an error or of another shape.
std::vector<Ref> references(const BusMessage &answer);
std::optional<Ref> reference(const BusMessage &answer);
States states(const BusMessage &answer);
std::vector<std::string> strings(const BusMessage &answer);
std::optional<uint32_t> unsignedNumber(const BusMessage &answer);
std::optional<int32_t> number(const BusMessage &answer);
std::optional<QString> text(const BusMessage &answer);
std::optional<std::pair<int32_t, int32_t>> span(const BusMessage &answer);
std::optional<int32_t> numberProperty(const BusMessage &answer);
std::optional<QString> textProperty(const BusMessage &answer);
std::optional<bool> boolProperty(const BusMessage &answer);

} // namespace pindle::atspi
