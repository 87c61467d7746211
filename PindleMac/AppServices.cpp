#include "PindleMac/AppServices.h"

namespace pindle {

AppServices::AppServices(Platform &platform)
    : platform_(platform)
    , apiClient_(platform.urlSession, platform.clock) {}

TimeZone AppServices::currentTimeZone() {
    return platform_.clock.currentTimeZone();
}

} // namespace pindle
