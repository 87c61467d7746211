#pragma once

#include <QStringList>

namespace pindle {

/// Starts a program that outlives this one and gets none of its descriptors; false when it could
/// not be started. Never waits for it.
bool startProgram(const QString &program, const QStringList &arguments);

} // namespace pindle
