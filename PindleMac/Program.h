#pragma once

#include "PindleMac/platform/URLSession.h"

#include <QString>
#include <functional>
#include <memory>

namespace pindle {

/// Runs the whole program on this desktop until it quits; what to return from main(). Requests go
/// through the session that `makeSession` makes once the application exists.
int runProgram(int argc, char **argv,
               const std::function<std::unique_ptr<URLSession>()> &makeSession);

/// The host that the embedded conversion service answers, inside the process.
QString embeddedServiceHost();

/// A reply of the embedded conversion service. Any thread.
URLResult answerInProcess(const URLRequest &request);

} // namespace pindle
