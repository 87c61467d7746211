#pragma once

#include "PindleMac/views/Card.h"

namespace pindle {

class WindowButton;
class WindowLabel;

/// What a permission is for, how it stands, and what can be done about it.
class PermissionCard : public Card {
    Q_OBJECT
public:
    /// Takes the actions over, left to right.
    PermissionCard(const QString &title, const QString &reason,
                   const QList<WindowButton *> &actions);

    void setStatus(const QString &status);

private:
    WindowLabel *status_;
};

} // namespace pindle
