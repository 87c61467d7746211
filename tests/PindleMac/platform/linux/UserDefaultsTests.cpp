#include "PindleMac/platform/linux/userdefaults/JsonUserDefaults.h"
#include "ServicesSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace pindle {
namespace {

struct Defaults : testing::Test {
    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("config/pindle"));
    QString path = folder + QStringLiteral("/defaults.json");
    JsonUserDefaults defaults{path};
    const QString key = QStringLiteral("key");

    void put(const QByteArray &bytes) {
        QDir().mkpath(folder);
        putFile(path, bytes);
    }
    QJsonObject stored() const { return QJsonDocument::fromJson(contents(path)).object(); }
    QStringList damaged() const {
        return QDir(folder).entryList({QStringLiteral("defaults.json.damaged-*")});
    }
};

TEST_F(Defaults, nothingIsStoredAtFirstAndReadingMakesNothing) {
    EXPECT_EQ(defaults.string(key), std::nullopt);
    EXPECT_FALSE(defaults.boolean(key));
    EXPECT_FALSE(QFileInfo::exists(home.filePath(QStringLiteral("config"))));
}

TEST_F(Defaults, aSetterHasWrittenWhenItReturns) {
    defaults.setString(key, QStringLiteral("värde 😀\n\"x\""));
    defaults.setBoolean(QStringLiteral("flag"), true);
    JsonUserDefaults nextStart(path);
    EXPECT_EQ(nextStart.string(key), QStringLiteral("värde 😀\n\"x\""));
    EXPECT_TRUE(nextStart.boolean(QStringLiteral("flag")));
    EXPECT_EQ(modeOf(path), 0600U);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(names(folder).size(), 1);
}

TEST_F(Defaults, theEmptyStringIsAValue) {
    defaults.setString(key, QString());
    EXPECT_EQ(JsonUserDefaults(path).string(key), QString());
}

TEST_F(Defaults, aValueOfAnotherTypeReadsAsNone) {
    put(R"({"key": 1, "flag": "true", "null": null, "list": [true]})");
    EXPECT_EQ(defaults.string(key), std::nullopt);
    for (const char *name : {"flag", "key", "null", "list"})
        EXPECT_FALSE(defaults.boolean(QString::fromLatin1(name))) << name;
}

TEST_F(Defaults, foreignKeysAreKept) {
    put(R"({"other": {"deep": [1, 2.5, null, 9007199254740993]}, "key": "old"})");
    defaults.setString(key, QStringLiteral("new"));
    EXPECT_EQ(stored().value(QStringLiteral("key")), QStringLiteral("new"));
    EXPECT_TRUE(contents(path).contains("9007199254740993"));
    EXPECT_TRUE(stored().value(QStringLiteral("other")).isObject());
}

TEST_F(Defaults, whatAnotherProcessWroteMeanwhileIsKept) {
    defaults.setString(key, QStringLiteral("ours"));
    put(R"({"key": "ours", "theirs": true})");
    EXPECT_TRUE(defaults.boolean(QStringLiteral("theirs")));
    defaults.setBoolean(QStringLiteral("flag"), true);
    EXPECT_EQ(stored().size(), 3);
}

TEST_F(Defaults, aDamagedFileIsKeptAside) {
    for (const QByteArray &bytes : {QByteArray(), QByteArray("{\"key\": \"ha"), QByteArray("[1]"),
                                    QByteArray("\xff\xfe"), QByteArray("null")}) {
        QDir(folder).removeRecursively();
        put(bytes);
        EXPECT_EQ(defaults.string(key), std::nullopt);
        ASSERT_EQ(damaged().size(), 1) << bytes.constData();
        EXPECT_EQ(contents(folder + QLatin1Char('/') + damaged().first()), bytes);
        defaults.setString(key, QStringLiteral("afresh"));
        EXPECT_EQ(defaults.string(key), QStringLiteral("afresh"));
        EXPECT_EQ(damaged().size(), 1);
    }
}

TEST_F(Defaults, twoDamagedFilesInOneSecondAreBothKept) {
    put("first");
    defaults.string(key);
    put("second");
    defaults.string(key);
    EXPECT_EQ(damaged().size(), 2);
}

TEST_F(Defaults, aDamagedFileThatCannotBeMovedIsNotOverwritten) {
    put("precious");
    ::chmod(folder.toUtf8().constData(), 0555);
    ::chmod(home.path().toUtf8().constData(), 0755);
    {
        const WithoutRootRights asUser;
        defaults.setString(key, QStringLiteral("value"));
        EXPECT_EQ(defaults.string(key), QStringLiteral("value"));
    }
    EXPECT_EQ(contents(path), "precious");
}

TEST_F(Defaults, aFileOutOfReachIsNotOverwritten) {
    put(R"({"other": "kept"})");
    ::chmod(home.path().toUtf8().constData(), 0755);
    ::chmod(folder.toUtf8().constData(), 0777);
    ::chmod(path.toUtf8().constData(), 0000);
    {
        const WithoutRootRights asUser;
        defaults.setString(key, QStringLiteral("value"));
        EXPECT_EQ(defaults.string(key), QStringLiteral("value"));
    }
    EXPECT_EQ(contents(path), R"({"other": "kept"})");
    defaults.setBoolean(QStringLiteral("flag"), true);
    EXPECT_EQ(stored().size(), 3);
}

TEST_F(Defaults, aValueThatCouldNotBeWrittenGoesWithTheNext) {
    defaults.setString(QStringLiteral("old"), QStringLiteral("1"));
    ::chmod(home.path().toUtf8().constData(), 0755);
    ::chmod(home.filePath(QStringLiteral("config")).toUtf8().constData(), 0755);
    ::chmod(folder.toUtf8().constData(), 0555);
    ::chmod(path.toUtf8().constData(), 0644);
    {
        const WithoutRootRights asUser;
        defaults.setString(key, QStringLiteral("value"));
    }
    EXPECT_EQ(defaults.string(key), QStringLiteral("value"));
    EXPECT_EQ(stored().size(), 1);
    ::chmod(folder.toUtf8().constData(), 0700);
    defaults.setBoolean(QStringLiteral("flag"), true);
    EXPECT_EQ(stored().size(), 3);
    EXPECT_EQ(JsonUserDefaults(path).string(key), QStringLiteral("value"));
}

TEST_F(Defaults, aPipeInThePlaceOfTheFileDoesNotBlock) {
    QDir().mkpath(folder);
    ASSERT_EQ(::mkfifo(path.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(defaults.string(key), std::nullopt);
    defaults.setString(key, QStringLiteral("value"));
    EXPECT_EQ(defaults.string(key), QStringLiteral("value"));
}

TEST_F(Defaults, aLinkedFileStaysALink) {
    QDir().mkpath(folder);
    const QString real = home.filePath(QStringLiteral("dotfiles.json"));
    putFile(real, R"({"other": 1})");
    ASSERT_TRUE(QFile::link(real, path));
    defaults.setString(key, QStringLiteral("value"));
    EXPECT_TRUE(QFileInfo(path).isSymLink());
    EXPECT_EQ(QJsonDocument::fromJson(contents(real)).object().size(), 2);
}

TEST_F(Defaults, aKilledProgramNeverLeavesAnEmptyOrHalfFile) {
    const QString large = QStringLiteral("x").repeated(100'000);
    defaults.setString(QStringLiteral("large"), large);
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<useconds_t> moment(0, 20'000);
    QSet<QString> reached;
    for (int i = 0; i < 200; ++i) {
        EndlessChild child(
            [&](int n) { defaults.setString(key, QStringLiteral("%1/%2").arg(i).arg(n)); });
        ::usleep(moment(random));
        child.kill();
        const QJsonObject now = stored();
        ASSERT_EQ(now.value(QStringLiteral("large")).toString(), large) << "kill " << i;
        reached.insert(now.value(key).toString());
    }
    EXPECT_TRUE(damaged().isEmpty());
    EXPECT_GT(reached.size(), 20) << "the children hardly wrote";
}

TEST(DefaultFolders, theyFollowTheBaseDirectoryVariables) {
    const WithEnvironment config("XDG_CONFIG_HOME", "/somewhere/config");
    EXPECT_EQ(JsonUserDefaults::defaultPath(),
              QStringLiteral("/somewhere/config/pindle/defaults.json"));
    const WithEnvironment relative("XDG_CONFIG_HOME", "not/absolute");
    EXPECT_EQ(JsonUserDefaults::defaultPath(),
              QDir::homePath() + QStringLiteral("/.config/pindle/defaults.json"));
    const WithEnvironment empty("XDG_CONFIG_HOME", "");
    EXPECT_EQ(JsonUserDefaults::defaultPath(),
              QDir::homePath() + QStringLiteral("/.config/pindle/defaults.json"));
}

} // namespace
} // namespace pindle
