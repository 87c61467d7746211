#pragma once

#include <sys/types.h>

namespace pindle {

/// Whether a process is a browser or another program built around the web engine that makes even
/// the text of a password field the PRIMARY selection. Told by the data files the engine needs next
/// to the executable; false where that folder cannot be looked into.
bool exportsPasswords(pid_t process);

} // namespace pindle
