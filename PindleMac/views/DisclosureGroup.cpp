#include "PindleMac/views/DisclosureGroup.h"

#include "PindleMac/views/DisclosureHeader.h"

#include <QVBoxLayout>

namespace pindle {

DisclosureGroup::DisclosureGroup(const QString &label, QWidget *content)
    : header_(new DisclosureHeader(label))
    , content_(content) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(header_, 0, Qt::AlignLeft);
    column->addWidget(content_);
    content_->hide();
    connect(header_, &DisclosureHeader::wanted, this, &DisclosureGroup::setExpanded);
}

bool DisclosureGroup::isExpanded() const {
    return header_->isExpanded();
}

void DisclosureGroup::setExpanded(bool expanded) {
    if (expanded == isExpanded())
        return;
    header_->setExpanded(expanded);
    content_->setVisible(expanded);
    Q_EMIT expandedChanged(expanded);
}

} // namespace pindle
