#pragma once

#include "PindleMac/AppSettingsStore.h"

#include <QComboBox>

namespace pindle {

/// A menu of the 26 shortcuts, in alphabetical order. A letter typed while the menu is open moves
/// to its row; with the menu closed nothing changes the choice by accident, the wheel included: the
/// arrow keys, Space and Return open it.
class ShortcutPicker : public QComboBox {
    Q_OBJECT
public:
    ShortcutPicker();

    /// Shows the letter as the choice, without telling anyone.
    void setKey(ShortcutKey key);
    ShortcutKey key() const;

Q_SIGNALS:
    /// The user has chosen a row.
    void chosen(pindle::ShortcutKey key);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace pindle
