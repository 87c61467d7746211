#include "PindleMac/platform/PlatformError.h"
#include "PindleMac/platform/linux/loginitem/AutostartLoginItem.h"
#include "ServicesSupport.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pindle {
namespace {

struct Autostart : testing::Test {
    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("autostart"));
    QString path = folder + QStringLiteral("/app.pindle.Pindle.desktop");
};

TEST_F(Autostart, registeringWritesTheEntryTheSessionReads) {
    AutostartLoginItem(QStringLiteral("/usr/bin/pindle"), folder).registerItem();
    EXPECT_EQ(
        contents(path),
        "[Desktop Entry]\nType=Application\nName=Pindle\n"
        "TryExec=/usr/bin/pindle\nExec=\"/usr/bin/pindle\"\nX-GNOME-Autostart-enabled=true\n");
    EXPECT_EQ(names(folder).size(), 1);
}

TEST_F(Autostart, theEntryRunsExactlyThisProgramWhateverItsPath) {
    // GLib is what most sessions parse entries with; of a percent sign it makes nothing.
    const QString program =
        home.filePath(QStringLiteral("a b\"c$d`e\\f g'h ü")) + QStringLiteral("/run");
    QDir().mkpath(QFileInfo(program).path());
    putFile(program, "#!/bin/sh\necho \"$#\" > \"$MARK\"\n");
    ::chmod(program.toUtf8().constData(), 0755);
    AutostartLoginItem(program, folder).registerItem();
    const QString mark = home.filePath(QStringLiteral("mark"));
    const WithEnvironment marked("MARK", mark.toUtf8());
    runPython(QStringLiteral("launch_entry.py"), {path});
    ASSERT_TRUE(waitUntil([&] { return contents(mark).endsWith('\n'); }, std::chrono::seconds(5)));
    EXPECT_EQ(contents(mark), "0\n");
}

TEST(DesktopEntry, everyCharacterWithAMeaningIsEscaped) {
    struct {
        const char *path;
        const char *exec;
    } const cases[] = {
        {"/usr/bin/pindle", R"("/usr/bin/pindle")"},
        {"/a b", R"("/a b")"},
        {"/a\"b", R"("/a\\"b")"},
        {"/a$b", R"("/a\\$b")"},
        {"/a`b", R"("/a\\`b")"},
        {"/a\\b", R"("/a\\\\b")"},
        {"/a%b", R"("/a%%b")"},
        {"/a'b", R"("/a'b")"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(desktopEntryExec(QString::fromLatin1(c.path)).toStdString(), c.exec) << c.path;
    }
}

TEST_F(Autostart, aSessionPassesOverTheEntryOfAProgramThatWasRemoved) {
    const QString program = home.filePath(QStringLiteral("a b\\c")) + QStringLiteral("/run");
    QDir().mkpath(QFileInfo(program).path());
    putFile(program, "#!/bin/sh\n");
    ::chmod(program.toUtf8().constData(), 0755);
    AutostartLoginItem(program, folder).registerItem();
    EXPECT_EQ(runPython(QStringLiteral("entry_is_usable.py"), {path}), "yes\n");
    QFile::remove(program);
    EXPECT_EQ(runPython(QStringLiteral("entry_is_usable.py"), {path}), "no\n");
}

TEST_F(Autostart, aPathWithALineBreakIsRefused) {
    for (const QString &bad : {QStringLiteral("/opt/x\nHidden=true"), QString()}) {
        AutostartLoginItem item(bad, folder);
        EXPECT_THROW(item.registerItem(), PlatformError);
    }
    EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(Autostart, unregisteringRemovesTheEntryAndAlsoSucceedsWithoutOne) {
    AutostartLoginItem item(QStringLiteral("/usr/bin/pindle"), folder);
    item.unregisterItem();
    item.registerItem();
    item.unregisterItem();
    EXPECT_TRUE(names(folder).isEmpty());
    item.unregisterItem();
}

TEST_F(Autostart, aReadOnlyFolderRefusesAndChangesNothing) {
    AutostartLoginItem item(QStringLiteral("/usr/bin/pindle"), folder);
    ::chmod(home.path().toUtf8().constData(), 0555);
    {
        const WithoutRootRights asUser;
        EXPECT_THROW(item.registerItem(), PlatformError);
    }
    EXPECT_FALSE(QFileInfo::exists(folder));
    ::chmod(home.path().toUtf8().constData(), 0755);
    item.registerItem();
    const QByteArray before = contents(path);
    ::chmod(folder.toUtf8().constData(), 0555);
    {
        const WithoutRootRights asUser;
        EXPECT_THROW(item.unregisterItem(), PlatformError);
        EXPECT_THROW(item.registerItem(), PlatformError);
    }
    EXPECT_EQ(contents(path), before);
    EXPECT_EQ(names(folder).size(), 1);
}

} // namespace
} // namespace pindle
