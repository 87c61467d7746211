#pragma once

#include "PindleMac/platform/Application.h"
#include "PindleMac/platform/linux/bus/SessionBus.h"

#include <vector>

namespace pindle {

/// The one running program of a session. It owns the name app.pindle.Pindle on the session bus and
/// answers there as org.freedesktop.Application (Desktop Entry Specification, D-Bus activation):
/// Activate and Open are taken as being started again, ActivateAction as the desktop entry's
/// actions. Nothing else that comes with a call is looked at. Main thread.
class SessionApplication final : public Application {
public:
    /// `bus` is null where there is none; then there may be several in a session. Else it must
    /// outlive this. Needs no application object of the toolkit.
    explicit SessionApplication(SessionBus *bus);

    /// False when the session's program is another process, which forward() talks to.
    bool claim();
    /// Has the session's program do it. False when that does not answer in time.
    bool forward(ApplicationRequest request);
    /// Does it here, from the event loop.
    void request(ApplicationRequest request);

    void setActivationPolicy(ActivationPolicy policy) override;
    void setRequestHandler(RequestHandler handler) override;
    void terminate() override;

private:
    static int onActivate(sd_bus_message *message, void *self, sd_bus_error *error);
    static int onAction(sd_bus_message *message, void *self, sd_bus_error *error);
    void deliver();

    SessionBus *bus_;
    BusSlot object_;
    RequestHandler handler_;
    std::vector<ApplicationRequest> waiting_;
};

} // namespace pindle
