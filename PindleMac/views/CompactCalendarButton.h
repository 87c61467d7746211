#pragma once

#include "PindleMac/Models.h"
#include "PindleMac/views/PlainButton.h"

namespace pindle {

/// A tile with a destination's symbol and short title.
class CompactCalendarButton : public PlainButton {
    Q_OBJECT
public:
    explicit CompactCalendarButton(const CalendarDestinationLink &link);

    const CalendarDestinationLink &link() const { return link_; }
    void setLink(const CalendarDestinationLink &link);

    QString iconName() const;
    QColor iconTint() const;
    QString shortTitle() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    double cornerRadius() const override;
    QColor fill() const override;
    void paintContent(QPainter &painter) override;

private:
    CalendarDestinationLink link_;
};

} // namespace pindle
