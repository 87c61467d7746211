#include "PindleMac/CommandLine.h"

#include <gtest/gtest.h>

namespace pindle {
namespace {

using Kind = CommandLine::Kind;

CommandLine parsed(std::initializer_list<const char *> arguments) {
    QStringList list;
    for (const char *argument : arguments)
        list += QString::fromUtf8(argument);
    return parseCommandLine(list);
}

TEST(CommandLine, withoutArgumentsTheProgramRuns) {
    EXPECT_EQ(parsed({}), CommandLine());
    EXPECT_EQ(parsed({}).request, ApplicationRequest::reopen);
}

TEST(CommandLine, everyActionOfTheDesktopEntryHasItsName) {
    EXPECT_EQ(actionNames(), QStringList({QStringLiteral("capture"), QStringLiteral("settings"),
                                          QStringLiteral("help"), QStringLiteral("report-bugs"),
                                          QStringLiteral("about"), QStringLiteral("quit")}));
    for (const QString &name : actionNames()) {
        const CommandLine two = parseCommandLine({QStringLiteral("--action"), name});
        EXPECT_EQ(two.kind, Kind::run);
        EXPECT_EQ(actionForRequest(two.request), name);
        EXPECT_EQ(parseCommandLine({QStringLiteral("--action=") + name}), two);
    }
}

TEST(CommandLine, startingAgainIsNoAction) {
    EXPECT_EQ(actionForRequest(ApplicationRequest::reopen), QString());
    EXPECT_EQ(requestForAction(QString()), std::nullopt);
    EXPECT_EQ(requestForAction(QStringLiteral("Settings")), std::nullopt);
}

TEST(CommandLine, versionAndHelpAreAskedForAlone) {
    EXPECT_EQ(parsed({"--version"}).kind, Kind::version);
    EXPECT_EQ(parsed({"--help"}).kind, Kind::help);
    EXPECT_EQ(parsed({"--version", "--help"}).kind, Kind::fault);
}

TEST(CommandLine, whatIsWrongIsNamed) {
    EXPECT_TRUE(parsed({"--frobnicate"}).message.contains(QStringLiteral("“--frobnicate”")));
    EXPECT_TRUE(parsed({"note.txt"}).message.contains(QStringLiteral("“note.txt”")));
    EXPECT_TRUE(parsed({"-h"}).message.contains(QStringLiteral("“-h”")));
    EXPECT_TRUE(parsed({"--action", "save"}).message.contains(QStringLiteral("“save”")));
    EXPECT_TRUE(parsed({"--action", "save"}).message.contains(QStringLiteral("report-bugs")));
    EXPECT_EQ(parsed({"--action", "save"}).kind, Kind::fault);
    EXPECT_EQ(parsed({"--action=", ""}).kind, Kind::fault);
    EXPECT_EQ(parsed({"--action"}).kind, Kind::fault);
    EXPECT_EQ(parsed({"--action", "capture", "text"}).kind, Kind::fault);
    EXPECT_EQ(parsed({""}).kind, Kind::fault);
}

TEST(CommandLine, theUsageNamesEveryOptionAndAction) {
    for (const QString &word :
         actionNames() + QStringList({QStringLiteral("--action"), QStringLiteral("--version"),
                                      QStringLiteral("--help")}))
        EXPECT_TRUE(usageText().contains(word)) << qPrintable(word);
}

} // namespace
} // namespace pindle
