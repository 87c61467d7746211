#pragma once

class QWidget;

/// Messages that appear by themselves, for those who do not see them appear.
namespace pindle::announcement {

/// Makes assistive technologies take the view for a message (AT-SPI's "notification") named
/// `QWidget::accessibleName()`. To be called once, before the view is shown.
void becomeMessage(QWidget &view);

/// Tells them that the view's message is new or has come back. The view is visible.
void announce(QWidget &view);

} // namespace pindle::announcement
