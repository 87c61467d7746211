#pragma once

#include "PindleMac/views/Card.h"

namespace pindle {

/// Shown while there is no draft: how to get one.
class IdleCard : public SectionCard {
    Q_OBJECT
public:
    IdleCard();
};

} // namespace pindle
