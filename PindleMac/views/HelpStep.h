#pragma once

#include <QWidget>

namespace pindle {

/// One step of the instructions: its number in a circle, and what to do.
class HelpStep : public QWidget {
    Q_OBJECT
public:
    HelpStep(const QString &number, const QString &text);
};

} // namespace pindle
