#include "PindleMac/platform/linux/bundle/ExecutableBundle.h"
#include "PindleMac/platform/linux/clock/SystemClock.h"
#include "PindleMac/platform/linux/notificationcenter/LocalNotificationCenter.h"
#include "PindleMac/platform/linux/workspace/DesktopWorkspace.h"
#include "ServicesSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pindle {
namespace {

using namespace std::chrono_literals;

TEST(Bundle, itKnowsItsVersionIdentifierAndFolder) {
    ExecutableBundle bundle;
    const QVariant version =
        bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"));
    EXPECT_EQ(version.typeId(), QMetaType::QString);
    static const QRegularExpression form(QStringLiteral("\\A\\d+\\.\\d+\\.\\d+\\z"));
    EXPECT_TRUE(form.match(version.toString()).hasMatch());
    EXPECT_FALSE(bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleName")).isValid());
    EXPECT_EQ(bundle.bundleIdentifier(), QStringLiteral("app.pindle.Pindle"));
    EXPECT_TRUE(QDir(bundle.bundlePath()).exists(QStringLiteral("linux_tests")));
}

TEST(Clock, nowIsTheMachinesSecond) {
    const auto before = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const auto now = SystemClock().now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

TEST(Clock, aSleepLastsAtLeastItsTimeAndCompletesOutsideTheCall) {
    SystemClock clock;
    for (const auto duration : {0ms, 1ms, 7ms, 140ms, 280ms}) {
        bool done = false;
        const auto start = std::chrono::steady_clock::now();
        std::chrono::steady_clock::time_point end;
        clock.sleep(duration, [&](bool cancelled) {
            EXPECT_FALSE(cancelled);
            end = std::chrono::steady_clock::now();
            done = true;
        });
        EXPECT_FALSE(done);
        ASSERT_TRUE(waitUntil([&] { return done; }));
        EXPECT_GE(end - start, duration);
        EXPECT_LT(end - start, duration + 100ms);
    }
}

TEST(Clock, theZoneIsReadAfreshAtEachCall) {
    SystemClock clock;
    const WithEnvironment first("TZ", "Europe/Berlin");
    EXPECT_EQ(clock.currentTimeZone().identifier, QStringLiteral("Europe/Berlin"));
    const WithEnvironment second("TZ", ":Asia/Kolkata");
    EXPECT_EQ(clock.currentTimeZone().identifier, QStringLiteral("Asia/Kolkata"));
    const WithEnvironment path("TZ", "/usr/share/zoneinfo/America/New_York");
    EXPECT_EQ(clock.currentTimeZone().identifier, QStringLiteral("America/New_York"));
    const WithEnvironment empty("TZ", "");
    EXPECT_EQ(clock.currentTimeZone().identifier, QStringLiteral("UTC"));
}

TEST(Clock, theMachinesZoneFollowsItsLinkAndThenItsFile) {
    const QTemporaryDir etc;
    ZoneSources sources;
    sources.link = etc.filePath(QStringLiteral("localtime"));
    sources.name = etc.filePath(QStringLiteral("timezone"));
    const QByteArray before = qgetenv("TZ");
    qunsetenv("TZ");
    EXPECT_EQ(machineZoneIdentifier(sources), QStringLiteral("UTC"));

    putFile(sources.name, "Europe/Paris\n");
    EXPECT_EQ(machineZoneIdentifier(sources), QStringLiteral("Europe/Paris"));
    putFile(sources.name, "Mars/Olympus\n");
    EXPECT_EQ(machineZoneIdentifier(sources), QStringLiteral("UTC"));

    for (const char *zone : {"Europe/Berlin", "posix/Asia/Tokyo", "America/Indiana/Knox"}) {
        QFile::remove(sources.link);
        QFile::link(QStringLiteral("/usr/share/zoneinfo/") + QString::fromLatin1(zone),
                    sources.link);
        EXPECT_TRUE(QString::fromLatin1(zone).endsWith(machineZoneIdentifier(sources))) << zone;
        EXPECT_NE(machineZoneIdentifier(sources), QStringLiteral("UTC"));
    }
    const WithEnvironment rule("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(machineZoneIdentifier(sources), QStringLiteral("America/Indiana/Knox"));
    qunsetenv("TZ");
    if (!before.isNull())
        qputenv("TZ", before);
}

TEST(Notifications, observersOfTheNameAreCalledAtOnceInOrder) {
    LocalNotificationCenter center;
    QList<int> calls;
    center.addObserver(QStringLiteral("a"), [&](const std::any &object) {
        EXPECT_EQ(std::any_cast<int>(object), 7);
        calls.append(1);
    });
    center.addObserver(QStringLiteral("a"), [&](const std::any &) { calls.append(2); });
    center.addObserver(QStringLiteral("b"), [&](const std::any &object) {
        EXPECT_FALSE(object.has_value());
        calls.append(3);
    });
    center.post(QStringLiteral("a"), 7);
    EXPECT_EQ(calls, (QList<int>{1, 2}));
    center.post(QStringLiteral("b"), {});
    center.post(QStringLiteral("nobody"), {});
    EXPECT_EQ(calls, (QList<int>{1, 2, 3}));
}

TEST(Notifications, anObserverMayAddAnother) {
    LocalNotificationCenter center;
    int late = 0;
    center.addObserver(QStringLiteral("a"), [&](const std::any &) {
        for (int i = 0; i < 20; ++i)
            center.addObserver(QStringLiteral("a"), [&](const std::any &) { ++late; });
    });
    center.post(QStringLiteral("a"), {});
    EXPECT_EQ(late, 0);
    center.post(QStringLiteral("a"), {});
    EXPECT_EQ(late, 20);
}

struct Opening : testing::Test {
    QTemporaryDir folder;
    QString log = folder.filePath(QStringLiteral("log"));

    void makeOpener(const QByteArray &more = {}) {
        const QString opener = folder.filePath(QStringLiteral("xdg-open"));
        putFile(opener,
                "#!/bin/sh\nprintf '%s|%s\\n' \"$#\" \"$1\" >> '" + log.toUtf8() + "'\n" + more);
        ::chmod(opener.toUtf8().constData(), 0755);
    }
    QByteArray path() const { return folder.path().toUtf8() + ":/usr/bin:/bin"; }
};

TEST_F(Opening, anHttpsAddressReachesTheOpenerByteForByte) {
    makeOpener();
    const WithEnvironment search("PATH", path());
    DesktopWorkspace workspace;
    const QByteArray addresses[] = {
        "https://calendar.example/render?action=TEMPLATE&text=Tea%20%26%20cake%2C%0Anow&dates="
        "20270520T133000Z%2F20270520T143000Z&ctz=Europe%2FBerlin",
        "https://x.example/?q=%E6%9D%B1%E4%BA%AC%F0%9F%98%80%2B%25%23%3D%22%27%60$(x);|",
        "https://x.example/a+b?c=d+e#f",
    };
    QByteArray expected;
    for (const QByteArray &address : addresses) {
        EXPECT_TRUE(workspace.open(QUrl::fromEncoded(address)));
        // The bar is the one character here that an address may not hold as it is.
        expected += "1|" + QByteArray(address).replace("|", "%7C") + "\n";
        ASSERT_TRUE(waitUntil([&] { return contents(log).size() >= expected.size(); }, 5s));
    }
    EXPECT_EQ(contents(log).toStdString(), expected.toStdString());
}

TEST_F(Opening, itDoesNotWaitForTheOpener) {
    makeOpener("sleep 2\n");
    const WithEnvironment search("PATH", path());
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(DesktopWorkspace().open(QUrl(QStringLiteral("https://x.example/"))));
    EXPECT_LT(timer.elapsed(), 100);
    EXPECT_TRUE(waitUntil([&] { return !contents(log).isEmpty(); }, 5s));
}

TEST_F(Opening, everyOtherAddressIsRefused) {
    makeOpener();
    const WithEnvironment search("PATH", path());
    DesktopWorkspace workspace;
    for (const char *address :
         {"http://x.example/", "javascript:alert(1)", "mailto:a@b.c", "", "https:", "https:///x",
          "/bin/sh", "ftp://x.example/", "file:///bin/sh",
          "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"})
        EXPECT_FALSE(workspace.open(QUrl(QString::fromLatin1(address)))) << address;
    EXPECT_FALSE(waitUntil([&] { return QFile::exists(log); }, 200ms));
}

TEST_F(Opening, withoutAnOpenerItSaysSo) {
    const WithEnvironment search("PATH", folder.path().toUtf8());
    EXPECT_FALSE(DesktopWorkspace().open(QUrl(QStringLiteral("https://x.example/"))));
}

TEST(Workspace, settingsAddressesGoToTheSettingsOpener) {
    QList<QUrl> asked;
    bool knows = true;
    DesktopWorkspace workspace([&](const QUrl &url) {
        asked.append(url);
        return knows;
    });
    const QUrl page(QStringLiteral(
        "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"));
    const QUrl pane(QStringLiteral("file:///System/Library/PreferencePanes/Security.prefPane"));
    EXPECT_TRUE(workspace.open(page));
    EXPECT_TRUE(workspace.open(pane));
    knows = false;
    EXPECT_FALSE(workspace.open(page));
    EXPECT_EQ(asked, (QList<QUrl>{page, pane, page}));
}

} // namespace
} // namespace pindle
