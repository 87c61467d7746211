#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace pindle {

/// NSApplication.ActivationPolicy, with its values.
enum class ActivationPolicy : int { regular = 0, accessory = 1, prohibited = 2 };

/// What the program is asked to do from outside its own windows. None of it carries any data.
enum class ApplicationRequest {
    reopen,  ///< it was started again
    capture, ///< what a press of the shortcut does
    settings,
    help,
    reportBugs,
    about,
    quit,
};

/// The request an action of the desktop entry stands for ("report-bugs"); absent for any other
/// name.
std::optional<ApplicationRequest> requestForAction(const QString &name);
/// The name of the action that stands for a request; empty for reopen, which is none.
QString actionForRequest(ApplicationRequest request);
/// The names of all actions, in the order they are listed to a user.
QStringList actionNames();

/// The process as the desktop sees it (NSApplication.shared). Called on the main thread.
class Application {
public:
    using RequestHandler = std::function<void(ApplicationRequest request)>;

    virtual ~Application() = default;

    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// `handler` is called on the main thread, from the event loop, at each request from outside;
    /// those that came earlier follow as soon as the loop runs.
    virtual void setRequestHandler(RequestHandler handler) = 0;

    /// Ends the process as soon as the caller has returned to the event loop. Asks nobody and waits
    /// for nothing that is under way.
    virtual void terminate() = 0;
};

} // namespace pindle
