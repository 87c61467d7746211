#pragma once

#include "PindleMac/views/Card.h"

namespace pindle {

class TextLabel;

/// A rounded card with one message, always shown whole, and announced when it appears or changes.
class MessageCard : public Card {
    Q_OBJECT
public:
    MessageCard(const QColor &tint, const QColor &foreground);

    QString text() const;
    /// Whether the message differs from the one shown before.
    bool setText(const QString &text);

private:
    TextLabel *text_;
};

} // namespace pindle
