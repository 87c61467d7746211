#pragma once

#include "PindleMac/platform/linux/privacy/PrivacyPermission.h"

#include <QDialog>
#include <vector>

class QTabWidget;

namespace pindle {

class PrivacyPageView;

/// The system's window for what this program may do: a page for each permission. It shows the state
/// as it is whenever it comes to the front, and closing it only hides it. Main thread.
class PrivacyWindow final : public QDialog {
public:
    /// Makes a native window the active one, in front of all others.
    using Activate = std::function<void(quintptr window)>;

    /// `pages` are in the order of PrivacyPage.
    PrivacyWindow(std::vector<PrivacyPermission> pages, Activate activate);

    void show(PrivacyPage page);
    /// Shows every state as it is now.
    void refresh();

    PrivacyPageView &page(PrivacyPage page) const;

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    Activate activate_;
    QTabWidget *tabs_;
    std::vector<PrivacyPageView *> pages_;
    bool placed_ = false;
};

} // namespace pindle
