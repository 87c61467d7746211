#pragma once

#include <QWidget>

namespace pindle {

class DisclosureHeader;

/// A heading with a triangle that folds the view below it away or brings it back. On the heading
/// Space and Return do either, Right unfolds and Left folds.
class DisclosureGroup : public QWidget {
    Q_OBJECT
public:
    /// Takes the content over; the group begins folded.
    DisclosureGroup(const QString &label, QWidget *content);

    bool isExpanded() const;
    void setExpanded(bool expanded);

Q_SIGNALS:
    void expandedChanged(bool expanded);

private:
    DisclosureHeader *header_;
    QWidget *content_;
};

} // namespace pindle
