#include "PindleMac/views/CalendarActionsCard.h"

#include "PindleMac/views/CompactCalendarButton.h"
#include "PindleMac/views/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr int spacing = 12;
constexpr int tileSpacing = 8;
} // namespace

CalendarActionsCard::CalendarActionsCard(Chosen chosen)
    : SectionCard(spacing)
    , chosen_(std::move(chosen))
    , row_(new QHBoxLayout) {
    row_->setSpacing(tileSpacing);
    column().addWidget(new TextLabel(QStringLiteral("Add To Calendar"), theme::TextStyle::headline,
                                     theme::primaryText()));
    column().addLayout(row_);
}

void CalendarActionsCard::setLinks(const QList<CalendarDestinationLink> &links) {
    while (tiles_.size() > links.size())
        delete tiles_.takeLast();
    for (qsizetype index = 0; index < links.size(); ++index) {
        if (index < tiles_.size())
            tiles_[index]->setLink(links[index]);
        else
            tiles_.append(addTile(links[index]));
    }
}

CompactCalendarButton *CalendarActionsCard::addTile(const CalendarDestinationLink &link) {
    auto *tile = new CompactCalendarButton(link);
    connect(tile, &QAbstractButton::clicked, this, [this, tile] { chosen_(tile->link()); });
    row_->addWidget(tile, 1);
    tile->show();
    return tile;
}

void CalendarActionsCard::setTilesEnabled(bool enabled) {
    QWidget *focused = window()->focusWidget();
    if (!enabled && focused && tiles_.contains(focused)) {
        focusToReturn_ = focused;
        // Otherwise the toolkit would hand the keyboard to the next control in the row.
        window()->setFocus(Qt::OtherFocusReason);
    }
    for (CompactCalendarButton *tile : tiles_)
        tile->setEnabled(enabled);
    if (enabled && focusToReturn_) {
        if (focused == window() || !focused)
            focusToReturn_->setFocus(Qt::TabFocusReason);
        focusToReturn_.clear();
    }
}

} // namespace pindle
