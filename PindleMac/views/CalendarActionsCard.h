#pragma once

#include "PindleMac/Models.h"
#include "PindleMac/views/Card.h"

#include <QList>
#include <QPointer>
#include <functional>

class QHBoxLayout;

namespace pindle {

class CompactCalendarButton;

/// The draft's destinations as a row of tiles.
class CalendarActionsCard : public SectionCard {
    Q_OBJECT
public:
    using Chosen = std::function<void(const CalendarDestinationLink &link)>;

    explicit CalendarActionsCard(Chosen chosen);

    void setLinks(const QList<CalendarDestinationLink> &links);
    /// Disabling the tile that has the keyboard leaves it without; enabling gives it back, unless
    /// it has gone elsewhere meanwhile.
    void setTilesEnabled(bool enabled);

private:
    void addTile();

    Chosen chosen_;
    QHBoxLayout *row_;
    QList<CompactCalendarButton *> tiles_;
    QPointer<QWidget> focusToReturn_;
};

} // namespace pindle
