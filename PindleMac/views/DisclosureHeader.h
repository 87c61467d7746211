#pragma once

#include "PindleMac/views/PlainButton.h"

namespace pindle {

/// The heading of a DisclosureGroup.
class DisclosureHeader : public PlainButton {
    Q_OBJECT
public:
    explicit DisclosureHeader(const QString &label);

    bool isExpanded() const { return expanded_; }
    /// Also tells assistive technologies.
    void setExpanded(bool expanded);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void wanted(bool expanded);

protected:
    double cornerRadius() const override;
    QColor fill() const override { return Qt::transparent; }
    void paintContent(QPainter &painter) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString label_;
    bool expanded_ = false;
};

} // namespace pindle
