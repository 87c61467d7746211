#pragma once

#include "PindleMac/HelpDiagnosticsModel.h"

#include <QPointer>
#include <QWidget>

class QScrollArea;
class QVBoxLayout;

namespace pindle {

class DebugRow;
class DisclosureGroup;
class MessageLine;
class OncePerTurn;
class PermissionCard;
class ThinScrollBar;
struct Platform;

/// How the program is used, how its two permissions stand, and facts for a report. Looks at the
/// permissions when it is put on the screen and whenever its window becomes the active one. Main
/// thread only.
class HelpView : public QWidget {
    Q_OBJECT
public:
    /// The platform must outlive the view.
    explicit HelpView(Platform &platform);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildArea();
    void addSteps(QVBoxLayout &column);
    QVBoxLayout *permissions();
    PermissionCard *accessibilityCard();
    PermissionCard *calendarCard();
    QWidget *debugRows(Platform &platform);
    void render();
    void reveal(QWidget &part);

    HelpDiagnosticsModel diagnostics_;
    OncePerTurn *rendering_;
    QScrollArea *area_;
    ThinScrollBar *scrollBar_;
    PermissionCard *accessibility_;
    PermissionCard *calendar_;
    MessageLine *message_;
    DebugRow *trustedRow_;
    DebugRow *calendarRow_;
    DisclosureGroup *debugStatus_;
    QPointer<QWidget> toReveal_; ///< once the layout has made room for it
};

} // namespace pindle
