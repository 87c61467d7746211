#include "PindleMac/platform/linux/eventstore/EvolutionBackend.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <systemd/sd-bus.h>

namespace pindle {

namespace {

constexpr uint64_t busCallLimit = 1'000'000; ///< microseconds
constexpr std::string_view serviceName = "org.gnome.evolution.dataserver.Sources5";

struct BusClose {
    void operator()(sd_bus *bus) const { sd_bus_flush_close_unref(bus); }
};

/// Takes a list of the bus library's and frees it.
bool namesTheService(char **names) {
    bool found = false;
    for (char **name = names; name && *name; ++name) {
        found = found || *name == serviceName;
        std::free(*name); // NOLINT(bugprone-multi-level-implicit-pointer-conversion)
    }
    std::free(static_cast<void *>(names));
    return found;
}

} // namespace

std::unique_ptr<CalendarBackend> loadEvolutionBackend() {
    const QString plugin = evolutionPluginPath();
    return !plugin.isEmpty() && isEvolutionOnSessionBus() ? loadCalendarBackend(plugin) : nullptr;
}

bool isEvolutionOnSessionBus() {
    sd_bus *opened = nullptr;
    if (sd_bus_open_user(&opened) < 0)
        return false;
    const std::unique_ptr<sd_bus, BusClose> bus(opened);
    sd_bus_set_method_call_timeout(opened, busCallLimit);
    char **running = nullptr;
    char **startable = nullptr;
    if (sd_bus_list_names(opened, &running, &startable) < 0)
        return false;
    const bool runs = namesTheService(running);
    return namesTheService(startable) || runs;
}

QString evolutionPluginPath() {
    const QString beside = QCoreApplication::applicationDirPath();
    for (const QString &folder :
         {beside, beside + QStringLiteral("/../" PINDLE_LIBRARY_FOLDER "/pindle")}) {
        QString path = folder + QStringLiteral("/libpindle-evolution.so");
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

std::unique_ptr<CalendarBackend> loadCalendarBackend(const QString &path) {
    QLibrary library(path);
    // The types its libraries register cannot be taken back.
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const auto make =
        reinterpret_cast<MakeCalendarBackend *>(library.resolve(makeCalendarBackendName));
    return std::unique_ptr<CalendarBackend>(make ? make() : nullptr);
}

} // namespace pindle
