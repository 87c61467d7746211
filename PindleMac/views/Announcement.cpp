#include "PindleMac/views/Announcement.h"

#include <QAccessible>
#include <QAccessibleWidget>
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

} // namespace

void becomeMessage(QWidget &view) {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(installed);
    view.setProperty(marker, true);
}

void announce(QWidget &view) {
    // Readers on the accessibility bus speak a message when it begins to show; others, on the
    // alert.
    for (const auto type : {QAccessible::ObjectShow, QAccessible::Alert}) {
        QAccessibleEvent event(&view, type);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace pindle::announcement
