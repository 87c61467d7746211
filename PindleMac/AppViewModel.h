#pragma once

#include "PindleMac/AppServices.h"
#include "PindleMac/AppSettingsStore.h"
#include "PindleMac/Models.h"

#include <QCoroTask>
#include <QList>
#include <QObject>
#include <QPointF>
#include <functional>

namespace pindle {

class GlobalHotKeyManager;

/// Says where the panel is wanted: a point of the global screen space, origin at the bottom-left
/// corner of the main screen, y growing upwards.
struct FloatingPanelRequest {
    QPointF screenPoint;
    bool operator==(const FloatingPanelRequest &) const = default;
};

/// Posted by the shortcut handler with a FloatingPanelRequest.
extern const QString showPindlePopover;
/// Posted without an object by the panel's close button.
extern const QString closePindlePopover;

/// The state of the whole workflow, from a press of the shortcut to a draft and from the draft to
/// a saved event. Main thread only. Runs are neither serialized nor cancelled: the one that
/// finishes last decides what is shown.
class AppViewModel : public QObject {
    Q_OBJECT
public:
    /// The published properties, in declaration order.
    enum class Property {
        eventDetails,
        phase,
        isLoading,
        errorMessage,
        successMessage,
        userMessage,
        calendarLinks,
        showCalendarSettingsAction,
        showAccessibilitySettingsAction,
    };

    static AppViewModel &shared();

    const CalendarEventDetails &eventDetails() const { return eventDetails_; }
    void setEventDetails(const CalendarEventDetails &details);
    ParserPhase phase() const { return phase_; }
    /// A capture, conversion or save is in flight.
    bool isLoading() const { return isLoading_; }
    const std::optional<QString> &errorMessage() const { return errorMessage_; }
    const std::optional<QString> &successMessage() const { return successMessage_; }
    /// The service's notice that came with the last reply; empty when there was none.
    const QString &userMessage() const { return userMessage_; }
    const QList<CalendarDestinationLink> &calendarLinks() const { return calendarLinks_; }
    bool showCalendarSettingsAction() const { return showCalendarSettingsAction_; }
    bool showAccessibilitySettingsAction() const { return showAccessibilitySettingsAction_; }

    AppSettingsStore &settings() const { return settings_; }
    /// Where the close button posts `closePindlePopover`.
    NotificationCenter &notificationCenter() const { return platform_.notificationCenter; }

    /// What brings the program's windows to the front.
    WindowServer &windowServer() const { return platform_.windowServer; }

    /// Once per process: first registration with the service, binding of the shortcut.
    void bootstrap();
    /// What a press of the shortcut does. Starts a task: posts `showPindlePopover` for the place of
    /// the pointer, then captureAndConvertSelection().
    void shortcutPressed();
    /// Starts a task: reads the selection and converts it into a draft.
    void captureAndConvertSelection();
    /// Persists the letter and binds the shortcut to it.
    void updateShortcutKey(ShortcutKey key);
    /// Starts a task: saves the draft, as it is when the task runs, to the system calendar.
    void saveEvent();
    /// Rebuilds the destinations of the current draft, at once.
    void refreshCalendarLinks();
    void openCalendarLink(const CalendarDestinationLink &link);
    void openCalendarSettings();
    void openAccessibilitySettings();
    void promptAccessibilityPermission();
    void openURL(const QUrl &url);
    /// Starts a task: opens the contact page with the install's key.
    void openBugReport();

Q_SIGNALS:
    /// Emitted before a new value lands, also for an equal value: a view takes it as "schedule one
    /// render".
    void objectWillChange(pindle::AppViewModel::Property property);

private:
    friend struct TestAccess;
    AppViewModel(Platform &platform, AppSettingsStore &settings, GlobalHotKeyManager &hotKeys);

    template<class T> void publish(Property property, T &stored, T value);

    std::function<void()> shortcutHandler();
    QCoro::Task<void> registerInstall();
    QCoro::Task<void> captureAndConvert();
    QCoro::Task<void> convertCurrentText(QString text);
    QCoro::Task<void> save();
    QCoro::Task<void> reportBug();
    void beginRun();
    void resetEvent();
    void captureFailed(const std::exception_ptr &error);
    void saveFailed(const std::exception_ptr &error);
    void publishError(const std::exception_ptr &error);

    Platform &platform_;
    AppSettingsStore &settings_;
    GlobalHotKeyManager &hotKeys_;
    AppServices services_;
    bool hasBootstrapped_ = false;

    CalendarEventDetails eventDetails_;
    ParserPhase phase_ = ParserPhase::idle;
    bool isLoading_ = false;
    std::optional<QString> errorMessage_;
    std::optional<QString> successMessage_;
    QString userMessage_;
    QList<CalendarDestinationLink> calendarLinks_;
    bool showCalendarSettingsAction_ = false;
    bool showAccessibilitySettingsAction_ = false;
};

} // namespace pindle
