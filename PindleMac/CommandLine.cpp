#include "PindleMac/CommandLine.h"

namespace pindle {

namespace {

CommandLine fault(const QString &message) {
    return {CommandLine::Kind::fault, ApplicationRequest::reopen, message};
}

CommandLine forAction(const QString &name) {
    if (const auto request = requestForAction(name))
        return {CommandLine::Kind::run, *request, {}};
    return fault(QStringLiteral("there is no action “%1”; the actions are %2")
                     .arg(name, actionNames().join(QStringLiteral(", "))));
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments) {
    const QString first = arguments.value(0);
    const QString actionOption = QStringLiteral("--action");
    if (arguments.isEmpty())
        return {};
    if (first == actionOption) {
        if (arguments.size() == 2)
            return forAction(arguments[1]);
        return fault(QStringLiteral("--action takes the name of one action"));
    }
    if (arguments.size() > 1)
        return fault(QStringLiteral("“%1” is one argument too many").arg(arguments[1]));
    if (first == QLatin1String("--version"))
        return {CommandLine::Kind::version, ApplicationRequest::reopen, {}};
    if (first == QLatin1String("--help"))
        return {CommandLine::Kind::help, ApplicationRequest::reopen, {}};
    if (first.startsWith(actionOption + QLatin1Char('=')))
        return forAction(first.mid(actionOption.size() + 1));
    return fault(QStringLiteral("there is no option “%1”").arg(first));
}

QString usageText() {
    return QStringLiteral("usage: pindle [--action NAME | --version | --help]\n"
                          "\n"
                          "Runs Pindle; where it runs already, shows its panel.\n"
                          "\n"
                          "  --action NAME  does one of: %1\n"
                          "  --version      prints the version\n"
                          "  --help         prints this\n")
        .arg(actionNames().join(QStringLiteral(", ")));
}

} // namespace pindle
