#pragma once

#include <QWidget>
#include <optional>

namespace pindle {

class ActionButton;
class MessageCard;

/// A failure's message and, below it, the ways out that are offered.
class ErrorSection : public QWidget {
    Q_OBJECT
public:
    ErrorSection();

    /// Whether the message differs from the one shown before.
    bool setMessage(const QString &message);
    void setOffers(bool calendarSettings, bool accessibilitySettings);

Q_SIGNALS:
    void openCalendarSettings();
    void promptAccessibility();
    void openAccessibilitySettings();

private:
    MessageCard *card_;
    QWidget *offers_;
    ActionButton *calendarSettings_;
    ActionButton *promptAccessibility_;
    ActionButton *accessibilitySettings_;
};

} // namespace pindle
