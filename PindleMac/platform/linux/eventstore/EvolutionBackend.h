#pragma once

#include "PindleMac/platform/linux/eventstore/CalendarBackend.h"

#include <QString>
#include <memory>

namespace pindle {

/// The backend for Evolution Data Server; null where the session bus has no such service and cannot
/// start one, and where the plugin or the libraries it needs are not installed. Looks at the bus
/// and loads the plugin, which may take a second. Any thread.
std::unique_ptr<CalendarBackend> loadEvolutionBackend();

/// The service is on the session bus, or the bus can start it.
bool isEvolutionOnSessionBus();

/// The plugin: beside the executable in a build folder, else in the installed private library
/// folder. Empty when it is in neither.
QString evolutionPluginPath();

/// The backend that the plugin at `path` makes; null when it cannot be loaded.
std::unique_ptr<CalendarBackend> loadCalendarBackend(const QString &path);

} // namespace pindle
