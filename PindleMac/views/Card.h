#pragma once

#include "PindleMac/views/Backdrop.h"

#include <QColor>
#include <QWidget>

class QVBoxLayout;

namespace pindle {

/// A filled rounded rectangle with other views on it.
class Card : public QWidget {
    Q_OBJECT
public:
    /// Corner radius in logical pixels.
    Card(const QColor &fill, double radius);

    void setFill(const QColor &fill);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor fill_;
    double radius_;
    Backdrop backdrop_;
};

/// The panel's sections: a white veil with a column of views, aligned leading.
class SectionCard : public Card {
    Q_OBJECT
public:
    explicit SectionCard(int spacing);

protected:
    QVBoxLayout &column() { return *column_; }

private:
    QVBoxLayout *column_;
};

} // namespace pindle
