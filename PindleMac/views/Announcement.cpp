#include "PindleMac/views/Announcement.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QVariant>
#include <QWidget>

namespace pindle::announcement {

namespace {

constexpr char marker[] = "pindleMessage";

QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object) {
    auto *view = qobject_cast<QWidget *>(object);
    return view && view->property(marker).toBool()
               ? new QAccessibleWidget(view, QAccessible::Notification)
               : nullptr;
}

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
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(installed);
    view.setProperty(marker, true);
    new AlertWhenShown(view);
}

void announceAnew(QWidget &view) {
    send(view, QAccessible::ObjectShow);
    send(view, QAccessible::Alert);
}

} // namespace pindle::announcement
