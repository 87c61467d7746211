#pragma once

#include <QByteArray>
#include <QSet>
#include <chrono>

namespace pindle {

/// Whether a program may be showing a terminal: it, or one of the processes below it, has the
/// controlling side of a pseudo-terminal open. Processes in `otherClients` have windows of their
/// own and are left out with all that is below them. Also true when `process` does not let itself
/// be looked into or when `budget` does not suffice. `procFolder` is where /proc is mounted.
bool mayShowTerminal(qint64 process, const QSet<qint64> &otherClients,
                     std::chrono::milliseconds budget, const QByteArray &procFolder = "/proc");

} // namespace pindle
