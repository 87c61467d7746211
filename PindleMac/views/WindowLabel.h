#pragma once

#include "PindleMac/views/TextLabel.h"
#include "PindleMac/views/WindowTheme.h"

namespace pindle {

/// A label of an ordinary window, in a colour that follows the desktop's palette.
class WindowLabel : public TextLabel {
    Q_OBJECT
public:
    WindowLabel(const QString &text, theme::TextStyle style,
                windowtheme::Ink ink = windowtheme::Ink::primary);

protected:
    void changeEvent(QEvent *event) override;

private:
    windowtheme::Ink ink_;
};

} // namespace pindle
