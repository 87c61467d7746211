#pragma once

#include <QAccessible>

class QWidget;

namespace pindle {

/// Makes assistive technologies take the view for something of this role. To be called once, in the
/// view's constructor; for views that neither have actions nor a value.
void setAccessibleRole(QWidget &view, QAccessible::Role role);

} // namespace pindle
