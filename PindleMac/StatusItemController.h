#pragma once

#include "PindleMac/platform/StatusBar.h"

#include <QObject>
#include <QPointer>
#include <memory>

namespace pindle {

class AppViewModel;
class FloatingPanelController;
class HelpWindowController;
class SettingsWindowController;
struct Platform;

/// Owns the program's icon on the desktop: a left click toggles the panel under it, a right click
/// opens a menu. It keeps none of the objects alive that it works with; what needs one that is gone
/// does nothing. Main thread only.
class StatusItemController : public QObject {
    Q_OBJECT
public:
    /// Makes the icon. Each object may be absent; the platform must outlive the controller.
    StatusItemController(std::weak_ptr<FloatingPanelController> panelController,
                         std::weak_ptr<SettingsWindowController> settingsWindowController,
                         std::weak_ptr<HelpWindowController> helpWindowController,
                         AppViewModel *viewModel, Platform &platform);
    ~StatusItemController() override;

    // What the menu's items do, for the desktop entry's actions as well.
    void openHelp();
    void openAbout();
    void openBugReport();
    void openSettings();
    void quitApp();

private:
    void handleStatusItemClick(std::optional<EventType> event);
    void showContextMenu();
    Menu contextMenu();

    std::weak_ptr<FloatingPanelController> panelController_;
    std::weak_ptr<SettingsWindowController> settingsWindowController_;
    std::weak_ptr<HelpWindowController> helpWindowController_;
    QPointer<AppViewModel> viewModel_;
    Platform &platform_;
    std::unique_ptr<StatusItem> statusItem_;
};

} // namespace pindle
