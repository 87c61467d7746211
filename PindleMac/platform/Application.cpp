#include "PindleMac/platform/Application.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pindle {

namespace {

constexpr std::array<std::pair<const char *, ApplicationRequest>, 6> actions{{
    {"capture", ApplicationRequest::capture},
    {"settings", ApplicationRequest::settings},
    {"help", ApplicationRequest::help},
    {"report-bugs", ApplicationRequest::reportBugs},
    {"about", ApplicationRequest::about},
    {"quit", ApplicationRequest::quit},
}};

} // namespace

std::optional<ApplicationRequest> requestForAction(const QString &name) {
    const auto found = std::find_if(actions.begin(), actions.end(), [&](const auto &action) {
        return name == QLatin1String(action.first);
    });
    return found == actions.end() ? std::nullopt : std::optional(found->second);
}

QString actionForRequest(ApplicationRequest request) {
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [&](const auto &action) { return action.second == request; });
    return found == actions.end() ? QString() : QString::fromLatin1(found->first);
}

QStringList actionNames() {
    QStringList names;
    for (const auto &action : actions)
        names += QString::fromLatin1(action.first);
    return names;
}

} // namespace pindle
