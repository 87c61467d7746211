#pragma once

#include "PindleMac/platform/linux/privacy/PrivacyPermission.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QTimer;

namespace pindle {

/// One permission: what it is for, whether it is given, and the control that changes it.
class PrivacyPageView final : public QWidget {
public:
    explicit PrivacyPageView(PrivacyPermission permission);

    /// Shows the state as it is now.
    void refresh();

    QCheckBox *choice() const { return choice_; }

private:
    void layOut();
    void change(bool granted);

    PrivacyPermission permission_;
    QCheckBox *choice_;
    QLabel *state_;
    QTimer *afterChange_;
};

} // namespace pindle
