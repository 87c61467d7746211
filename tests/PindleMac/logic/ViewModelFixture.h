#pragma once

#include "tests/PindleMac/logic/TestAccess.h"

namespace pindle {

inline const QByteArray lunchDetails =
    R"({"title":"Lunch","description":"","location":"Room 4","startDate":"2025-03-14",)"
    R"("endDate":"","startTime":"12:00","endTime":"","timeZone":"Europe/Berlin"})";

/// A view model on a fake desktop that has text selected and a service that answers.
struct ViewModelFixture : LogicFixture {
    using Property = AppViewModel::Property;

    std::unique_ptr<AppSettingsStore> settings = TestAccess::settings(desktop);
    std::unique_ptr<GlobalHotKeyManager> hotKeys = TestAccess::hotKeys(desktop);
    std::unique_ptr<AppViewModel> model = TestAccess::viewModel(desktop, *settings, *hotKeys);
    QList<Property> changes;
    static constexpr quint32 letterE = 14;

    ViewModelFixture() {
        desktop.accessibility.select(QStringLiteral(" Lunch Friday at noon \n"));
        desktop.urlSession.convertsTo(lunchDetails);
        QObject::connect(model.get(), &AppViewModel::objectWillChange, model.get(),
                         [this](Property property) { changes += property; });
    }
    void run() {
        model->captureAndConvertSelection();
        drain();
    }
    void registered() {
        desktop.userDefaults.values[AppPreferences::anonymizedKey] = QStringLiteral("k");
    }
    /// A draft as the service would send it.
    static QByteArray details(const QByteArray &title, const QByteArray &startDate) {
        QByteArray copy = lunchDetails;
        return copy.replace(R"("title":"Lunch")", R"("title":")" + title + '"')
            .replace("2025-03-14", startDate);
    }
    static QByteArray reply(const QByteArray &details) {
        return R"({"success":true,"details":)" + details + '}';
    }
};

} // namespace pindle
