#pragma once

#include "PindleMac/views/WindowLabel.h"

namespace pindle {

/// A line that is there while there is something to tell, and says so when it is new.
class MessageLine : public WindowLabel {
    Q_OBJECT
public:
    explicit MessageLine(windowtheme::Ink ink);

    /// An empty message hides the line. Whether the line appeared or changed.
    bool setMessage(const QString &message);
};

} // namespace pindle
