#include "PindleMac/views/Announcement.h"

#include "PindleMac/views/AccessibleRole.h"

#include <QEvent>
#include <QWidget>

namespace pindle::announcement {

namespace {

void send(QWidget &view, QAccessible::Event type) {
    QAccessibleEvent event(&view, type);
    QAccessible::updateAccessibility(&event);
}

/// The toolkit tells of every view that it begins to show, which readers on the accessibility bus
/// speak when it is a message; other readers wait for the alert.
class AlertWhenShown : public QObject {
public:
    explicit AlertWhenShown(QWidget &view)
        : QObject(&view) {
        view.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Show && watched == parent())
            send(*static_cast<QWidget *>(watched), QAccessible::Alert);
        return false;
    }
};

} // namespace

void becomeMessage(QWidget &view) {
    setAccessibleRole(view, QAccessible::Notification);
    new AlertWhenShown(view);
}

void announceAnew(QWidget &view) {
    send(view, QAccessible::ObjectShow);
    send(view, QAccessible::Alert);
}

} // namespace pindle::announcement
