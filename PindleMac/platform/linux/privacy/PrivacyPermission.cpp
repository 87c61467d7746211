#include "PindleMac/platform/linux/privacy/PrivacyPermission.h"

#include "PindleMac/platform/linux/accessibility/AtspiAccessibility.h"
#include "PindleMac/platform/linux/questions/AccessDecisions.h"
#include "PindleMac/platform/linux/workspace/StartProgram.h"

namespace pindle {

namespace {

std::function<void()> opener(PrivacyPage page) {
    const auto settings = desktopSettings(page);
    if (!settings)
        return {};
    return [settings] { startProgram(settings->path, settings->arguments); };
}

PrivacyPermission::State calendarState(AccessDecisions &decisions) {
    const auto decision = decisions.calendar();
    if (!decision)
        return {false, QStringLiteral("Pindle has not asked for it yet.")};
    return *decision == AccessDecisions::Decision::writeOnly
               ? PrivacyPermission::State{true, QStringLiteral("Pindle may add events.")}
               : PrivacyPermission::State{false, QStringLiteral("Pindle may not add events.")};
}

} // namespace

PrivacyPermission calendarPermission(AccessDecisions &decisions) {
    return {QStringLiteral("Calendars"),
            QStringLiteral("Pindle adds the events you choose to save to your calendar. It never "
                           "reads it."),
            QStringLiteral("Allow Pindle to add events"),
            QStringLiteral("Events that are in the calendar already stay there."),
            [&decisions] { return calendarState(decisions); },
            [&decisions](bool granted) {
                decisions.setCalendar(granted ? AccessDecisions::Decision::writeOnly
                                              : AccessDecisions::Decision::denied);
            },
            opener(PrivacyPage::calendars)};
}

PrivacyPermission accessibilityPermission(AtspiAccessibility &accessibility) {
    return {QStringLiteral("Accessibility"),
            QStringLiteral("Pindle reads the text you have highlighted through the desktop’s "
                           "accessibility service."),
            QStringLiteral("Switch on the accessibility service"),
            QStringLiteral("Programs that are running already may have to be restarted to take "
                           "part. While the service is off, screen readers cannot work either."),
            [&accessibility] {
                return accessibility.AXIsProcessTrusted()
                           ? PrivacyPermission::State{true, QStringLiteral("The accessibility "
                                                                           "service is on.")}
                           : PrivacyPermission::State{false, QStringLiteral("The accessibility "
                                                                            "service is off.")};
            },
            [&accessibility](bool granted) { accessibility.setSwitchedOn(granted); },
            opener(PrivacyPage::accessibility)};
}

} // namespace pindle
