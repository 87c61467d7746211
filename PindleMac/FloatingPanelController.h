#pragma once

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <memory>
#include <optional>

namespace pindle {

class AppViewModel;
class CursorPopoverPanel;
class Screens;
struct Platform;

/// Owns the panel, places it, shows and hides it. Points are those of the global space: origin at
/// the bottom-left corner of the main screen, y growing upwards. Main thread only.
class FloatingPanelController : public QObject {
    Q_OBJECT
public:
    /// Builds the panel, hidden. The view model and the platform must outlive the controller.
    FloatingPanelController(AppViewModel &viewModel, Platform &platform);
    ~FloatingPanelController() override;

    /// Makes the first show as quick as any other; to be called once there is nothing else to do.
    void prepare();
    /// Shows the panel near a point, else near the pointer, without taking the keyboard. A panel
    /// that is shown already moves there.
    void show(std::optional<QPointF> near);
    void close();
    /// Hides a shown panel; shows a hidden one under the middle of the status item, or near the
    /// pointer when the item's frame is not known. A QRectF's top() is its lowest y here.
    void toggleFromStatusItem(std::optional<QRectF> itemFrame);
    bool isShown() const;

private:
    void windowDidResignKey();

    Screens &screens_;
    std::unique_ptr<CursorPopoverPanel> panel_;
};

} // namespace pindle
