#pragma once

#include "PindleMac/views/Card.h"

namespace pindle {

class SelectableText;

/// A fact about the program, to be copied into a report.
class DebugRow : public Card {
    Q_OBJECT
public:
    explicit DebugRow(const QString &label);

    void setValue(const QString &value);

private:
    SelectableText *value_;
};

} // namespace pindle
