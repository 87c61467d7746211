#pragma once

#include "PindleMac/AppViewModel.h"
#include "PindleMac/GlobalHotKeyManager.h"
#include "tests/platform/FakeDesktop.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <memory>

namespace pindle {

/// Builds the shared objects over a test's own desktop and puts the state in place that a run of
/// the workflow would leave.
struct TestAccess {
    static std::unique_ptr<AppSettingsStore> settings(Platform &platform) {
        return std::unique_ptr<AppSettingsStore>(
            new AppSettingsStore(platform.userDefaults, platform.loginItem));
    }
    static std::unique_ptr<GlobalHotKeyManager> hotKeys(Platform &platform) {
        return std::unique_ptr<GlobalHotKeyManager>(new GlobalHotKeyManager(platform.hotKeys));
    }
    static std::unique_ptr<AppViewModel> viewModel(Platform &platform, AppSettingsStore &settings,
                                                   GlobalHotKeyManager &hotKeys) {
        return std::unique_ptr<AppViewModel>(new AppViewModel(platform, settings, hotKeys));
    }

    using Property = AppViewModel::Property;
    static void setPhase(AppViewModel &model, ParserPhase phase) {
        set(model, Property::phase, model.phase_, phase);
    }
    static void setLoading(AppViewModel &model, bool loading) {
        set(model, Property::isLoading, model.isLoading_, loading);
    }
    static void setError(AppViewModel &model, std::optional<QString> text) {
        set(model, Property::errorMessage, model.errorMessage_, std::move(text));
    }
    static void setSuccess(AppViewModel &model, std::optional<QString> text) {
        set(model, Property::successMessage, model.successMessage_, std::move(text));
    }
    static void setUserMessage(AppViewModel &model, const QString &text) {
        set(model, Property::userMessage, model.userMessage_, text);
    }
    static void setLinks(AppViewModel &model, const QList<CalendarDestinationLink> &links) {
        set(model, Property::calendarLinks, model.calendarLinks_, links);
    }
    static void setOffers(AppViewModel &model, bool calendar, bool accessibility) {
        set(model, Property::showCalendarSettingsAction, model.showCalendarSettingsAction_,
            calendar);
        set(model, Property::showAccessibilitySettingsAction,
            model.showAccessibilitySettingsAction_, accessibility);
    }

private:
    template<class T> static void set(AppViewModel &model, Property property, T &stored, T value) {
        Q_EMIT model.objectWillChange(property);
        stored = std::move(value);
    }
};

namespace shelltest {

/// A desktop with a view model on it.
struct Shell {
    fake::FakeDesktop desktop;
    std::unique_ptr<AppSettingsStore> settings = TestAccess::settings(desktop.platform);
    std::unique_ptr<GlobalHotKeyManager> hotKeys = TestAccess::hotKeys(desktop.platform);
    std::unique_ptr<AppViewModel> model =
        TestAccess::viewModel(desktop.platform, *settings, *hotKeys);

    Shell() = default;
    Q_DISABLE_COPY_MOVE(Shell)
    /// What a test set off and did not wait for begins while there is still a model for it.
    ~Shell() { QCoreApplication::sendPostedEvents(); }

    /// A draft with its destinations, as after a reply.
    void becomeReady() { becomeReady(lunch()); }
    void becomeReady(const CalendarEventDetails &details) {
        model->setEventDetails(details);
        model->refreshCalendarLinks();
        TestAccess::setPhase(*model, ParserPhase::ready);
    }

    static CalendarEventDetails lunch() {
        return {QStringLiteral("Lunch & Learn: Roadmap"),
                QStringLiteral("Bring your laptop.\nWe walk through the roadmap together."),
                QStringLiteral("Meeting room 4, second floor"),
                QStringLiteral("2025-03-14"),
                QStringLiteral("2025-03-14"),
                QStringLiteral("12:00"),
                QStringLiteral("13:30"),
                QStringLiteral("Europe/Berlin")};
    }
};

} // namespace shelltest
} // namespace pindle
