#pragma once

#include <QWidget>

namespace pindle {

/// The panel's name, its hint and its close button.
class PanelHeader : public QWidget {
    Q_OBJECT
public:
    PanelHeader();

Q_SIGNALS:
    void closeClicked();
};

} // namespace pindle
