#pragma once

#include "PindleMac/Models.h"
#include "PindleMac/views/Card.h"

namespace pindle {

class TextLabel;

/// Shown while a draft is on its way: what is happening, above the outline of a text.
class LoadingCard : public SectionCard {
    Q_OBJECT
public:
    LoadingCard();

    void setPhase(ParserPhase phase);

private:
    TextLabel *headline_;
    TextLabel *explanation_;
};

} // namespace pindle
