#include "PindleMac/platform/linux/eventstore/CalendarBackend.h"

#include <libecal/libecal.h>
#include <memory>

namespace pindle {

namespace {

/// Connects without waiting until the calendar is online as well.
constexpr guint32 noWaitForOnline = static_cast<guint32>(-1);

constexpr int registryAttempts = 3; ///< to find one that is not about to end
constexpr char registryName[] = "org.gnome.evolution.dataserver.Sources5";

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};
template<class T> using Ref = std::unique_ptr<T, Unref>;

struct FreeError {
    void operator()(GError *error) const { g_error_free(error); }
};

/// Receives what a call fails with.
class Failure {
public:
    GError **out() { return &error_; }
    bool is(GQuark domain, int code) const {
        return g_error_matches(error_, domain, code) != FALSE;
    }
    std::string text() const { return error_ ? error_->message : "The calendar service failed"; }
    GQuark domain() const { return error_ ? error_->domain : 0; }
    ~Failure() { g_clear_error(&error_); }
    Failure() = default;
    Failure(const Failure &) = delete;
    Failure &operator=(const Failure &) = delete;

private:
    GError *error_ = nullptr;
};

/// The service was called and went away, or the wait for its answer was ended.
bool mayHaveBeenDone(const Failure &failure) {
    return failure.is(G_IO_ERROR, G_IO_ERROR_CANCELLED) ||
           failure.is(G_IO_ERROR, G_IO_ERROR_CLOSED) ||
           failure.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
           failure.is(G_IO_ERROR, G_IO_ERROR_BROKEN_PIPE) ||
           failure.is(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) ||
           failure.is(G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
           failure.is(G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT) ||
           failure.is(G_DBUS_ERROR, G_DBUS_ERROR_DISCONNECTED);
}

BackendConnection failed(const std::string &error) {
    return {BackendConnection::State::failed, {}, {}, error};
}

/// The instant of a time of the event; `zone` is for times that are not in UTC.
std::int64_t instantOf(ICalTime *time, ICalTimezone *zone) {
    return i_cal_time_is_utc(time) ? i_cal_time_as_timet(time)
                                   : i_cal_time_as_timet_with_zone(time, zone);
}

class EvolutionBackend final : public CalendarBackend {
public:
    EvolutionBackend()
        : cancellable_(g_cancellable_new()) {}
    ~EvolutionBackend() override;
    EvolutionBackend(const EvolutionBackend &) = delete;
    EvolutionBackend &operator=(const EvolutionBackend &) = delete;

    BackendConnection connect() override;
    BackendSave save(const BackendEvent &event) override;
    void interrupt() override { g_cancellable_cancel(cancellable_.get()); }
    void resume() override { g_cancellable_reset(cancellable_.get()); }

private:
    void useOwnContext();
    std::string startRegistry(GDBusConnection *bus);
    BackendConnection connectByRegistry();
    bool takesZone(ICalComponent *calendar, const BackendEvent &event);
    Ref<ICalTimezone> zoneAsRead(ICalComponent *definition);
    BackendConnection connectTo(ESource *source);

    Ref<GCancellable> cancellable_;
    GMainContext *context_ =
        nullptr; ///< what the service signals goes here, not to the main thread
    Ref<ECalClient> client_;
};

EvolutionBackend::~EvolutionBackend() {
    client_.reset();
    if (context_) {
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }
}

void EvolutionBackend::useOwnContext() {
    if (!context_) {
        context_ = g_main_context_new();
        g_main_context_push_thread_default(context_);
    }
    while (g_main_context_iteration(context_, FALSE)) {
    }
}

BackendConnection EvolutionBackend::connect() {
    useOwnContext();
    client_.reset();
    Failure failure;
    const Ref<GDBusConnection> bus(
        g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable_.get(), failure.out()));
    if (!bus)
        return failed(failure.text());
    // The end of the session's bus is no reason to end the program.
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);

    // A registry that has just died leaves an empty list behind, not an error. Only one that runs
    // and still lists nothing has no calendars.
    BackendConnection connection;
    for (int i = 0; i < registryAttempts && !client_; ++i) {
        if (const std::string error = startRegistry(bus.get()); !error.empty())
            return failed(error);
        connection = connectByRegistry();
    }
    return connection;
}

/// What it fails with; empty once the registry runs and answers.
std::string EvolutionBackend::startRegistry(GDBusConnection *bus) {
    std::string error;
    for (int i = 0; i < registryAttempts; ++i) {
        Failure failure;
        GVariant *answer = g_dbus_connection_call_sync(
            bus, registryName, "/", "org.freedesktop.DBus.Peer", "Ping", nullptr, nullptr,
            G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(), failure.out());
        if (answer) {
            g_variant_unref(answer);
            return {};
        }
        error = failure.text();
        if (!failure.is(G_DBUS_ERROR,
                        G_DBUS_ERROR_NO_REPLY)) // one that died on the way is replaced
            break;
    }
    return error;
}

BackendConnection EvolutionBackend::connectByRegistry() {
    Failure failure;
    const Ref<ESourceRegistry> registry(
        e_source_registry_new_sync(cancellable_.get(), failure.out()));
    if (!registry)
        return failed(failure.text());
    GList *calendars = e_source_registry_list_sources(registry.get(), E_SOURCE_EXTENSION_CALENDAR);
    const bool any = calendars != nullptr;
    g_list_free_full(calendars, g_object_unref);
    if (!any)
        return {BackendConnection::State::absent, {}, {}, {}};
    const Ref<ESource> source(e_source_registry_ref_default_calendar(registry.get()));
    return source ? connectTo(source.get()) : failed("No default calendar is available.");
}

BackendConnection EvolutionBackend::connectTo(ESource *source) {
    Failure failure;
    EClient *client = e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                                                noWaitForOnline, cancellable_.get(), failure.out());
    if (!client)
        return failed(failure.text());
    client_.reset(E_CAL_CLIENT(client));
    return {BackendConnection::State::connected,
            e_source_get_uid(source),
            e_source_get_display_name(source),
            {}};
}

BackendSave EvolutionBackend::save(const BackendEvent &event) {
    if (!client_)
        return {BackendSave::Outcome::refused, "The calendar is not open."};
    Ref<ICalComponent> calendar(i_cal_component_new_from_string(event.zoned.c_str()));
    if (!calendar || !takesZone(calendar.get(), event))
        calendar.reset(i_cal_component_new_from_string(event.universal.c_str()));
    const Ref<ICalComponent> written(
        calendar ? i_cal_component_get_first_component(calendar.get(), I_CAL_VEVENT_COMPONENT)
                 : nullptr);
    if (!written)
        return {BackendSave::Outcome::refused, "The event could not be written."};
    const Ref<ICalComponent> alone(i_cal_component_clone(written.get()));

    Failure failure;
    if (e_cal_client_create_object_sync(client_.get(), alone.get(), E_CAL_OPERATION_FLAG_NONE,
                                        nullptr, cancellable_.get(), failure.out()) ||
        failure.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_ID_ALREADY_EXISTS))
        return {BackendSave::Outcome::saved, {}};
    return {mayHaveBeenDone(failure) ? BackendSave::Outcome::unknown
                                     : BackendSave::Outcome::refused,
            failure.text()};
}

/// Gives the store the zone and looks whether its times then say the event's instants. The store
/// keeps a definition it has already, and its clients take the system's for names they know.
bool EvolutionBackend::takesZone(ICalComponent *calendar, const BackendEvent &event) {
    const Ref<ICalComponent> definition(
        i_cal_component_get_first_component(calendar, I_CAL_VTIMEZONE_COMPONENT));
    const Ref<ICalComponent> written(
        i_cal_component_get_first_component(calendar, I_CAL_VEVENT_COMPONENT));
    if (!definition || !written)
        return written != nullptr;
    const Ref<ICalTimezone> zone = zoneAsRead(definition.get());
    if (!zone)
        return false;
    const Ref<ICalTime> start(i_cal_component_get_dtstart(written.get()));
    const Ref<ICalTime> end(i_cal_component_get_dtend(written.get()));
    return instantOf(start.get(), zone.get()) == event.start &&
           instantOf(end.get(), zone.get()) == event.end;
}

/// The zone as the store's clients understand its name; null when it does not take it.
Ref<ICalTimezone> EvolutionBackend::zoneAsRead(ICalComponent *definition) {
    const Ref<ICalTimezone> own(i_cal_timezone_new());
    if (!i_cal_timezone_set_component(own.get(),
                                      Ref<ICalComponent>(i_cal_component_clone(definition)).get()))
        return nullptr;
    if (!e_cal_client_add_timezone_sync(client_.get(), own.get(), cancellable_.get(), nullptr))
        return nullptr;
    ICalTimezone *read = nullptr;
    if (!e_cal_client_get_timezone_sync(client_.get(), i_cal_timezone_get_tzid(own.get()), &read,
                                        cancellable_.get(), nullptr) ||
        !read)
        return nullptr;
    // It stays the client's.
    return Ref<ICalTimezone>(static_cast<ICalTimezone *>(g_object_ref(read)));
}

} // namespace

} // namespace pindle

extern "C" __attribute__((visibility("default"))) pindle::CalendarBackend *
pindleMakeCalendarBackend1() {
    return new pindle::EvolutionBackend;
}
