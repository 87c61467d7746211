#pragma once

class QWidget;

/// Messages that appear by themselves, for those who do not see them appear.
namespace pindle::announcement {

/// Makes assistive technologies take the view for a message (AT-SPI's "notification") named
/// `QWidget::accessibleName()`, which is announced whenever the view appears. To be called once,
/// before the view is shown.
void becomeMessage(QWidget &view);

/// Announces a message that changed while the view was visible.
void announceAnew(QWidget &view);

} // namespace pindle::announcement
