#pragma once

#include <QWidget>

class QVBoxLayout;

namespace pindle {

class AppViewModel;
class MessageLine;
class OncePerTurn;
class ShortcutPicker;
class SwitchControl;
class WindowLabel;

/// The two settings, read from the store whenever the view is rendered and written back at once.
/// Main thread only.
class SettingsView : public QWidget {
    Q_OBJECT
public:
    /// The view model must outlive the view.
    explicit SettingsView(AppViewModel &viewModel);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QVBoxLayout *header();
    QVBoxLayout *shortcutSection();
    void requestRender();
    void render();

    AppViewModel &viewModel_;
    OncePerTurn *rendering_;
    SwitchControl *launchAtLogin_;
    ShortcutPicker *shortcut_;
    WindowLabel *currentShortcut_;
    MessageLine *error_;
};

} // namespace pindle
