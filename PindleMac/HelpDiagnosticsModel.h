#pragma once

#include "PindleMac/AppServices.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QString>
#include <optional>

namespace pindle {

struct Platform;

/// What the help window knows of the program's two permissions, as of the last look. Main thread
/// only.
class HelpDiagnosticsModel : public QObject {
    Q_OBJECT
public:
    enum class Property { accessibilityEnabled, calendarStatus, permissionMessage };

    /// The platform outlives the model.
    explicit HelpDiagnosticsModel(Platform &platform);

    bool accessibilityEnabled() const { return accessibilityEnabled_; }
    /// One of the texts of AppServices::calendarPermissionStatusText().
    const QString &calendarStatus() const { return calendarStatus_; }
    /// What came of the last permission action; absent before the first.
    const std::optional<QString> &permissionMessage() const { return permissionMessage_; }

    /// Looks at both permissions; never prompts.
    void refresh();
    void promptAccessibilityPermission();
    void openAccessibilitySettings();
    /// Starts a task: requests write access to the calendar, then tells what came of it.
    void requestCalendarPermission();
    void openCalendarSettings();

Q_SIGNALS:
    /// Emitted before the new value lands, also for an equal value.
    void objectWillChange(pindle::HelpDiagnosticsModel::Property property);

private:
    static QCoro::Task<void> request(QPointer<HelpDiagnosticsModel> self);
    void tell(const QString &message);

    AppServices services_;
    bool accessibilityEnabled_ = false;
    QString calendarStatus_ = QStringLiteral("Unknown");
    std::optional<QString> permissionMessage_;
};

} // namespace pindle
