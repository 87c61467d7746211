#include "PindleMac/platform/linux/application/SessionApplication.h"

#include <QApplication>
#include <QSessionManager>

namespace pindle {

namespace {

constexpr char busName[] = "app.pindle.Pindle";
constexpr char objectPath[] = "/app/pindle/Pindle";
constexpr char interfaceName[] = "org.freedesktop.Application";

/// Longest wait, at start-up, to learn who owns the name.
constexpr std::chrono::milliseconds claimTimeout{250};
/// How long the running program may take to answer one that was started again and has nothing
/// else to do.
constexpr std::chrono::milliseconds forwardTimeout{5000};

// Results of org.freedesktop.DBus.RequestName (D-Bus Specification).
constexpr uint32_t doNotQueue = 4;
constexpr uint32_t nameExists = 3;

Deadline after(std::chrono::milliseconds time) {
    return std::chrono::steady_clock::now() + time;
}

} // namespace

SessionApplication::SessionApplication(SessionBus *bus)
    : bus_(bus) {
    if (!bus_)
        return;
    static const sd_bus_vtable methods[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("Activate", "a{sv}", "", onActivate, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("Open", "asa{sv}", "", onActivate, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_METHOD("ActivateAction", "sava{sv}", "", onAction, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };
    sd_bus_slot *slot = nullptr;
    sd_bus_add_object_vtable(bus_->bus(), &slot, objectPath, interfaceName, methods, this);
    object_.reset(slot);
}

bool SessionApplication::claim() {
    if (!bus_)
        return true;
    try {
        BusConnection &connection = bus_->connection();
        auto call = connection.method("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                      "org.freedesktop.DBus", "RequestName");
        sd_bus_message_append(call.get(), "su", busName, doNotQueue);
        const auto answer = connection.call(std::move(call), after(claimTimeout), claimTimeout);
        uint32_t result = 0;
        return !answer || sd_bus_message_read(answer.get(), "u", &result) < 0 ||
               result != nameExists;
    } catch (const std::exception &) {
        // A bus that does not answer is as good as none.
        return true;
    }
}

bool SessionApplication::forward(ApplicationRequest request) {
    const QByteArray action = actionForRequest(request).toLatin1();
    const char *method = action.isEmpty() ? "Activate" : "ActivateAction";
    try {
        BusConnection &connection = bus_->connection();
        auto call = connection.method(busName, objectPath, interfaceName, method);
        if (action.isEmpty())
            sd_bus_message_append(call.get(), "a{sv}", 0);
        else
            sd_bus_message_append(call.get(), "sava{sv}", action.constData(), 0, 0);
        return connection.call(std::move(call), after(forwardTimeout), forwardTimeout) != nullptr;
    } catch (const std::exception &) {
        return false;
    }
}

int SessionApplication::onActivate(sd_bus_message *message, void *self, sd_bus_error *) {
    const int sent = sd_bus_reply_method_return(message, nullptr);
    static_cast<SessionApplication *>(self)->request(ApplicationRequest::reopen);
    return sent;
}

int SessionApplication::onAction(sd_bus_message *message, void *self, sd_bus_error *error) {
    const char *name = nullptr;
    if (const int read = sd_bus_message_read(message, "s", &name); read < 0)
        return read;
    const auto request = requestForAction(QString::fromUtf8(name));
    if (!request)
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "There is no such action.");
    if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "v") < 0 ||
        sd_bus_message_at_end(message, 0) == 0)
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "No action takes a parameter.");
    const int sent = sd_bus_reply_method_return(message, nullptr);
    static_cast<SessionApplication *>(self)->request(*request);
    return sent;
}

void SessionApplication::request(ApplicationRequest request) {
    waiting_.push_back(request);
    if (handler_)
        QMetaObject::invokeMethod(
            qApp, [this] { deliver(); }, Qt::QueuedConnection);
}

void SessionApplication::setRequestHandler(RequestHandler handler) {
    handler_ = std::move(handler);
    QMetaObject::invokeMethod(
        qApp, [this] { deliver(); }, Qt::QueuedConnection);
}

void SessionApplication::deliver() {
    for (const ApplicationRequest request : std::exchange(waiting_, {}))
        handler_(request);
}

void SessionApplication::setActivationPolicy(ActivationPolicy policy) {
    // An accessory application lives on without a window and is nothing for a task bar; whether it
    // starts with the session is the user's setting, not the session manager's memory.
    QApplication::setQuitOnLastWindowClosed(policy == ActivationPolicy::regular);
    QObject::connect(qApp, &QGuiApplication::saveStateRequest, qApp, [](QSessionManager &manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
    });
}

void SessionApplication::terminate() {
    // Unlike quit(), this asks no window whether it would like to close.
    QCoreApplication::exit(EXIT_SUCCESS);
}

} // namespace pindle
