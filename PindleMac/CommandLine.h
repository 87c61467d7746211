#pragma once

#include "PindleMac/platform/Application.h"

#include <QString>
#include <QStringList>

namespace pindle {

/// What the program's arguments ask for.
struct CommandLine {
    enum class Kind {
        run,     ///< run, or have the running program do `request`
        version, ///< print the version
        help,    ///< print how it is used
        fault,   ///< the arguments are wrong; `message` says how, in one sentence
    };
    Kind kind = Kind::run;
    ApplicationRequest request = ApplicationRequest::reopen;
    QString message;
    bool operator==(const CommandLine &) const = default;
};

/// `arguments` are those after the program's name.
CommandLine parseCommandLine(const QStringList &arguments);

/// How the program is used, several lines.
QString usageText();

} // namespace pindle
