#include "PindleMac/views/ShortcutPicker.h"

#include "PindleMac/views/Theme.h"

#include <QAbstractItemView>
#include <QKeyEvent>

namespace pindle {

ShortcutPicker::ShortcutPicker() {
    for (const ShortcutKey key : allShortcutKeys())
        addItem(QStringLiteral("Command + Shift + ") + displayName(key), rawValue(key));
    setMaxVisibleItems(count());
    setFont(theme::font(theme::TextStyle::body));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    view()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, [this] { Q_EMIT chosen(key()); });
}

void ShortcutPicker::setKey(ShortcutKey key) {
    setCurrentIndex(findData(rawValue(key)));
}

ShortcutKey ShortcutPicker::key() const {
    return shortcutKeyFromRawValue(currentData().toString()).value_or(ShortcutKey::e);
}

bool ShortcutPicker::eventFilter(QObject *watched, QEvent *event) {
    if (watched == view() && event->type() == QEvent::KeyPress) {
        const QString letter = static_cast<QKeyEvent *>(event)->text().toLower();
        const int row = letter.isEmpty() ? -1 : findData(letter);
        if (row >= 0) {
            view()->setCurrentIndex(model()->index(row, 0));
            return true;
        }
    }
    return QComboBox::eventFilter(watched, event);
}

void ShortcutPicker::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        showPopup();
        break;
    default:
        event->ignore();
    }
}

void ShortcutPicker::wheelEvent(QWheelEvent *event) {
    event->ignore();
}

} // namespace pindle
