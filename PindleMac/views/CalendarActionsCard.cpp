#include "PindleMac/views/CalendarActionsCard.h"

#include "PindleMac/views/CompactCalendarButton.h"
#include "PindleMac/views/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr int spacing = 12;
constexpr int tileSpacing = 8;
constexpr int usualTiles = 4;
} // namespace

CalendarActionsCard::CalendarActionsCard(Chosen chosen)
    : SectionCard(spacing)
    , chosen_(std::move(chosen))
    , row_(new QHBoxLayout) {
    row_->setSpacing(tileSpacing);
    column().addWidget(new TextLabel(QStringLiteral("Add To Calendar"), theme::TextStyle::headline,
                                     theme::primaryText()));
    column().addLayout(row_);
    // Made now, the tiles have their place in the order of the Tab key.
    for (int tile = 0; tile < usualTiles; ++tile)
        addTile();
}

void CalendarActionsCard::setLinks(const QList<CalendarDestinationLink> &links) {
    while (tiles_.size() < links.size())
        addTile();
    for (qsizetype index = 0; index < tiles_.size(); ++index) {
        tiles_[index]->setVisible(index < links.size());
        if (index < links.size())
            tiles_[index]->setLink(links[index]);
    }
}

void CalendarActionsCard::addTile() {
    auto *tile = new CompactCalendarButton({});
    connect(tile, &QAbstractButton::clicked, this, [this, tile] { chosen_(tile->link()); });
    tile->hide();
    row_->addWidget(tile, 1);
    if (!tiles_.isEmpty())
        setTabOrder(tiles_.last(), tile);
    tiles_.append(tile);
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
