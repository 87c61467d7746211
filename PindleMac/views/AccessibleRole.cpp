#include "PindleMac/views/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace pindle {

namespace {

constexpr char roleProperty[] = "pindleAccessibleRole";

QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object) {
    auto *view = qobject_cast<QWidget *>(object);
    const QVariant role = view ? view->property(roleProperty) : QVariant();
    return role.isValid()
               ? new QAccessibleWidget(view, static_cast<QAccessible::Role>(role.toInt()))
               : nullptr;
}

} // namespace

void setAccessibleRole(QWidget &view, QAccessible::Role role) {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(installed);
    view.setProperty(roleProperty, static_cast<int>(role));
    // Naming a view may have made its interface already, of the toolkit's own role.
    if (QAccessibleInterface *known = QAccessible::queryAccessibleInterface(&view))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
}

} // namespace pindle
