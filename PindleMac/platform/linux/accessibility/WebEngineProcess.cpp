#include "PindleMac/platform/linux/accessibility/WebEngineProcess.h"

#include <QByteArray>
#include <climits>
#include <unistd.h>

namespace pindle {

bool exportsPasswords(pid_t process) {
    const QByteArray folder = "/proc/" + QByteArray::number(process);
    QByteArray program(PATH_MAX, '\0');
    const ssize_t length =
        readlink((folder + "/exe").constData(), program.data(), static_cast<size_t>(PATH_MAX));
    if (length <= 0)
        return false;
    program.truncate(length);
    program.truncate(program.lastIndexOf('/') + 1);
    // The path is that of the process, which may live in a container.
    const QByteArray place = folder + "/root" + program;
    for (const char *file : {"icudtl.dat", "v8_context_snapshot.bin", "chrome_100_percent.pak"}) {
        if (access((place + file).constData(), F_OK) == 0)
            return true;
    }
    return false;
}

} // namespace pindle
