#pragma once

#include "PindleMac/platform/URLSession.h"

#include <QString>
#include <functional>
#include <memory>

namespace pindle {

/// Runs the whole program on this desktop until it quits, or has the session's running one do what
/// the arguments ask; the status to end the process with. Requests go through the session that
/// `makeSession` makes once the application exists.
int runProgram(int argc, char **argv,
               const std::function<std::unique_ptr<URLSession>()> &makeSession);

/// Ends the process without waiting for threads that are still at work: nothing of theirs is to be
/// kept, and what is has been written when it came up.
[[noreturn]] void endProcess(int status);

/// The host that the embedded conversion service answers, inside the process.
QString embeddedServiceHost();

/// A reply of the embedded conversion service. Any thread.
URLResult answerInProcess(const URLRequest &request);

} // namespace pindle
