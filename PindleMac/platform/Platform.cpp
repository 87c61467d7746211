#include "PindleMac/platform/Platform.h"

#include <QtGlobal>

namespace pindle {

namespace {
Platform *installed = nullptr;
}

void Platform::install(Platform &platform) {
    installed = &platform;
}

Platform &Platform::shared() {
    if (!installed)
        qFatal("no platform was handed over");
    return *installed;
}

} // namespace pindle
