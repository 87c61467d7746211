#include "EventStoreFixture.h"
#include "PindleMac/platform/linux/files/PrivateFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pindle {
namespace {

TEST_F(CalendarFolder, withoutACalendarTheSaveIsRefusedInPlainWords) {
    allow();
    const auto made = event(QStringLiteral("Tea"), summer, "UTC");
    made->setCalendar(std::nullopt);
    EXPECT_TRUE(refusal(*made).startsWith(QStringLiteral("No default calendar")));
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(CalendarFolder, withoutAccessTheSaveIsRefused) {
    const auto made = event(QStringLiteral("Tea"), summer, "UTC");
    EXPECT_NE(refusal(*made), QStringLiteral("(saved)"));
    decisions.setCalendar(AccessDecisions::Decision::denied);
    EXPECT_NE(refusal(*made), QStringLiteral("(saved)"));
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(CalendarFolder, aReadOnlyFolderIsNoCalendarAndTheNextSaveWorks) {
    allow();
    const auto made = event(QStringLiteral("Tea"), summer, "Europe/Berlin");
    QFile::setPermissions(home.path(), QFile::Permissions(0x7755));
    for (const char *part :
         {"config", "config/pindle", "data", "data/pindle", "data/pindle/calendar"})
        ::chmod(home.filePath(QString::fromLatin1(part)).toUtf8().constData(), 0555);
    ::chmod(permissions.toUtf8().constData(), 0644);
    {
        const WithoutRootRights asUser;
        EXPECT_FALSE(store->defaultCalendarForNewEvents());
        const QString sentence = refusal(*made);
        EXPECT_TRUE(sentence.contains(folder)) << sentence.toStdString();
        EXPECT_TRUE(sentence.contains(QStringLiteral("cannot be written to")));
    }
    EXPECT_TRUE(files().isEmpty());
    ::chmod(folder.toUtf8().constData(), 0700);
    store->save(*made, EKSpan::thisEvent);
    EXPECT_EQ(files().size(), 1);
}

TEST_F(CalendarFolder, aFileInThePlaceOfTheFolderIsNoCalendar) {
    allow();
    QDir().mkpath(QFileInfo(folder).path());
    putFile(folder, "not a folder");
    EXPECT_FALSE(store->defaultCalendarForNewEvents());
    const auto made = event(QStringLiteral("Tea"), summer, "UTC");
    made->setCalendar(EKCalendar{folder});
    EXPECT_TRUE(refusal(*made).contains(QStringLiteral("is not a folder")));
    EXPECT_EQ(contents(folder), "not a folder");
    QFile::remove(folder);
    made->setCalendar(store->defaultCalendarForNewEvents());
    store->save(*made, EKSpan::thisEvent);
    EXPECT_EQ(files().size(), 1);
}

TEST_F(CalendarFolder, aWriteCutShortLeavesNothingBehind) {
    allow();
    store->defaultCalendarForNewEvents();
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100, 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const auto made = event(QStringLiteral("Tea"), summer, "Europe/Berlin");
        ::_exit(refusal(*made).contains(folder) ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(CalendarFolder, aFullDiskIsSaidSoAndLeavesNothingBehind) {
    allow();
    store->defaultCalendarForNewEvents();
    const QByteArray path = folder.toUtf8();
    if (::mount("none", path.constData(), "tmpfs", 0, "size=32k,mode=700") != 0)
        GTEST_SKIP() << "no right to mount a small disk here";
    const QString filler = folder + QStringLiteral("/filler");
    QFile full(filler);
    ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (full.write(QByteArray(4096, 'x')) == 4096) {
    }
    full.close();
    const auto made = event(QStringLiteral("Tea"), summer, "Europe/Berlin");
    const QString sentence = refusal(*made);
    const QStringList left = files();
    QFile::remove(filler);
    const QString second = refusal(*made);
    const qsizetype after = files().size();
    ::umount(path.constData());
    EXPECT_TRUE(sentence.contains(QStringLiteral("no space left"))) << sentence.toStdString();
    EXPECT_TRUE(sentence.contains(folder));
    EXPECT_EQ(left, QStringList{QStringLiteral("filler")});
    EXPECT_EQ(second, QStringLiteral("(saved)"));
    EXPECT_EQ(after, 1);
}

TEST_F(CalendarFolder, whatKilledSavesLeftIsClearedOnceItIsOld) {
    allow();
    store->defaultCalendarForNewEvents();
    const QString old = folder + QStringLiteral("/.old") + temporarySuffix;
    const QString young = folder + QStringLiteral("/.young") + temporarySuffix;
    const QString foreign = folder + QStringLiteral("/.foreign");
    for (const QString &path : {old, young, foreign})
        putFile(path, "BEGIN:VCAL");
    for (const QString &path : {old, foreign}) {
        const timespec hours[2] = {{std::time(nullptr) - 7200, 0}, {std::time(nullptr) - 7200, 0}};
        ::utimensat(AT_FDCWD, path.toUtf8().constData(), hours, 0);
    }
    store->save(*event(QStringLiteral("Tea"), summer, "UTC"), EKSpan::thisEvent);
    EXPECT_FALSE(QFileInfo::exists(old));
    EXPECT_TRUE(QFileInfo::exists(young));
    EXPECT_TRUE(QFileInfo::exists(foreign));
}

TEST_F(CalendarFolder, aKilledProgramLeavesOnlyWholeEvents) {
    allow();
    store->defaultCalendarForNewEvents();
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<useconds_t> moment(0, 30'000);
    const QString title = QStringLiteral("Tea 東京 ").repeated(200);
    const auto made = event(title, summer, "Europe/Berlin");
    for (int i = 0; i < 200; ++i) {
        EndlessChild child([&](int) { store->save(*made, EKSpan::thisEvent); });
        ::usleep(moment(random));
        child.kill();
    }
    QStringList events;
    for (const QString &name : files()) {
        if (name.endsWith(QStringLiteral(".ics")))
            events.append(folder + QLatin1Char('/') + name);
        else
            EXPECT_TRUE(name.startsWith(QLatin1Char('.'))) << name.toStdString();
    }
    const auto read =
        QJsonDocument::fromJson(runPython(QStringLiteral("read_events.py"), events)).array();
    EXPECT_EQ(read.size(), events.size());
    for (const QJsonValue &own : read) {
        EXPECT_EQ(own[QStringLiteral("title")].toString(), title);
        EXPECT_EQ(own[QStringLiteral("notes")].toString(), QStringLiteral("Bring tea"));
        EXPECT_EQ(own[QStringLiteral("start")].toInteger(), summer.time_since_epoch().count());
    }
    EXPECT_GT(events.size(), 10) << "the children hardly saved";
    std::printf("200 kills left %lld whole events\n", static_cast<long long>(events.size()));
}

TEST_F(CalendarFolder, aSaveTakesAFewMilliseconds) {
    allow();
    const auto made = event(QStringLiteral("Tea"), summer, "Europe/Berlin");
    QElapsedTimer timer;
    timer.start();
    store->save(*made, EKSpan::thisEvent);
    const qint64 firstUs = timer.nsecsElapsed() / 1000;
    QList<qint64> times;
    for (int i = 0; i < 100; ++i) {
        timer.restart();
        store->save(*made, EKSpan::thisEvent);
        times.append(timer.nsecsElapsed() / 1000);
    }
    std::sort(times.begin(), times.end());
    std::printf("save: first %lld us, median %lld us, slowest of 100 %lld us\n",
                static_cast<long long>(firstUs), static_cast<long long>(times.at(50)),
                static_cast<long long>(times.last()));
    // The fastest, for the machine may be busy with something else.
    EXPECT_LT(times.first(), 16'000);
}

} // namespace
} // namespace pindle
