#include "PindleMac/platform/linux/hotkeys/X11HotKeys.h"
#include "PostingFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTest>
#include <QThread>

using namespace pindle;
using namespace pindle::test;

namespace {

const auto text = QStringLiteral("Dinner on Friday at 7 pm");

OSStatus countPress(void *count) {
    ++*static_cast<int *>(count);
    return noErr;
}

/// Keys pressed on the outer display are the hardware keyboard of this one.
class EventPostingNested : public PostingFixture {
protected:
    void SetUp() override {
        ASSERT_TRUE(qEnvironmentVariableIsSet("PINDLE_OUTER_DISPLAY"));
        hardware = std::make_unique<Actor>(qgetenv("PINDLE_OUTER_DISPLAY").constData());
        PostingFixture::SetUp();
        keys = std::make_unique<X11HotKeys>(*connection, *keyboard);
        std::optional<EventHandlerRef> handler;
        keys->InstallEventHandler({}, &countPress, {{kEventClassKeyboard, kEventHotKeyPressed}},
                                  &fired, handler);
        std::optional<EventHotKeyRef> ref;
        ASSERT_EQ(keys->RegisterEventHotKey(ansiE, cmdKey | shiftKey, {}, {}, 0, ref), noErr);
    }

    void TearDown() override {
        releaseHotKey();
        keys.reset();
        PostingFixture::TearDown();
    }

    /// What the server remembers of keys pressed by programs.
    static QByteArray keysOfPrograms() {
        QProcess process;
        process.start(QStringLiteral("xinput"), {QStringLiteral("query-state"),
                                                 QStringLiteral("Virtual core XTEST keyboard")});
        process.waitForFinished(3000);
        QByteArray down;
        for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
            if (line.contains("=down"))
                down += line.trimmed() + ' ';
        }
        return down;
    }

    bool pressHotKey() {
        const int before = fired;
        hardware->press(keySuper);
        hardware->press(keyShift);
        hardware->press(keyE);
        return waitUntil([&] { return fired == before + 1; });
    }

    void releaseHotKey() {
        for (const auto key : {keyE, keyShift, keySuper})
            hardware->release(key);
    }

    std::unique_ptr<Actor> hardware;
    std::unique_ptr<X11HotKeys> keys;
    int fired = 0;
};

const std::vector<int> superAndShift = {keyShift, keySuper};

} // namespace

TEST_F(EventPostingNested, hardwareKeysAreNotThoseOfPrograms) {
    hardware->press(keyShift);
    ASSERT_TRUE(waitUntil([&] { return target.keysDown() == std::vector<int>{keyShift}; }));
    EXPECT_EQ(keysOfPrograms(), "");
    hardware->release(keyShift);
    ASSERT_TRUE(waitUntil([&] { return target.keysDown().empty(); }));
}

TEST_F(EventPostingNested, heldModifiersDoNotReachTheTargetAndArePutBack) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(pressHotKey());
    target.forgetKeys();
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keysDown() == superAndShift; }));
    int chords = 0;
    for (const auto &[key, state] : pressesOfTarget()) {
        EXPECT_NE(key, keyE);
        if (key == keyC) {
            ++chords;
            EXPECT_EQ(state, XCB_MOD_MASK_CONTROL);
        }
    }
    EXPECT_EQ(chords, 1);
    releaseHotKey();
    EXPECT_TRUE(waitUntil([&] { return target.keysDown().empty(); }));
    EXPECT_TRUE(waitUntil([&] { return keysOfPrograms().isEmpty(); })) << keysOfPrograms().data();
    EXPECT_EQ(fired, 1);
}

TEST_F(EventPostingNested, modifiersTheUserLetGoOfMeanwhileStayUp) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(pressHotKey());
    post(true);
    releaseHotKey();
    settle(100);
    post(false);
    settle(100);
    EXPECT_TRUE(target.keysDown().empty());
    EXPECT_EQ(keysOfPrograms(), "");
}

TEST_F(EventPostingNested, oneOfTwoModifiersLetGoIsTheOnlyOneThatStaysUp) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(pressHotKey());
    post(true);
    hardware->release(keyShift);
    settle(100);
    post(false);
    EXPECT_TRUE(waitUntil([&] { return target.keysDown() == std::vector<int>{keySuper}; }));
    hardware->release(keySuper);
    hardware->release(keyE);
    EXPECT_TRUE(waitUntil([&] { return target.keysDown().empty(); }));
    EXPECT_TRUE(waitUntil([&] { return keysOfPrograms().isEmpty(); }));
}

TEST_F(EventPostingNested, noModifierStaysDownAfterManyRounds) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(pressHotKey()) << i;
        copy();
        settle(i * 15);
        releaseHotKey();
        settle(20);
    }
    EXPECT_TRUE(waitUntil([&] { return target.keysDown().empty(); }));
    EXPECT_TRUE(waitUntil([&] { return keysOfPrograms().isEmpty(); }));
    EXPECT_EQ(fired, 10);
}

TEST_F(EventPostingNested, aPressRightAfterAReleaseIsNoRepetition) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(pressHotKey());
    copy();
    settle(50);
    // Both have happened before either is looked at.
    hardware->release(keyE);
    QThread::msleep(40);
    hardware->press(keyE);
    QThread::msleep(40);
    EXPECT_TRUE(waitUntil([&] { return fired == 2; }));
}

TEST_F(EventPostingNested, aSecondPressWhileHoldingFiresAgainAndTypesNothing) {
    QPlainTextEdit edit(text);
    edit.show();
    edit.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&edit));
    edit.selectAll();
    ASSERT_TRUE(pressHotKey());
    settle(140);
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    copy();
    ASSERT_TRUE(waitUntil([&] { return QGuiApplication::clipboard()->text() == text; }));
    for (int again = 2; again <= 4; ++again) {
        hardware->release(keyE);
        settle(60);
        hardware->press(keyE);
        ASSERT_TRUE(waitUntil([&] { return fired == again; })) << again;
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        copy();
        ASSERT_TRUE(waitUntil([&] { return QGuiApplication::clipboard()->text() == text; }));
        EXPECT_EQ(edit.toPlainText(), text);
    }
    releaseHotKey();
    settle(200);
    EXPECT_EQ(edit.toPlainText(), text);
    EXPECT_EQ(keysOfPrograms(), "");
}

TEST_F(EventPostingNested, aKeyHeldThroughTheChordNeitherFiresAgainNorTypes) {
    QPlainTextEdit edit(text);
    edit.show();
    edit.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&edit));
    edit.selectAll();
    ASSERT_TRUE(run(QStringLiteral("xset"), {QStringLiteral("r"), QStringLiteral("rate"),
                                             QStringLiteral("200"), QStringLiteral("40")}));
    ASSERT_TRUE(pressHotKey());
    settle(400);
    EXPECT_EQ(fired, 1);
    copy();
    settle(800);
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(edit.toPlainText(), text);
    releaseHotKey();
    settle(100);
    EXPECT_EQ(edit.toPlainText(), text);
}

TEST_F(EventPostingNested, aKeyboardThatRepeatsByReleasingFiresOnceToo) {
    // That is what a nested server's keyboard does when the outer one repeats.
    const QString outer = qEnvironmentVariable("PINDLE_OUTER_DISPLAY");
    const auto set = [&](const QStringList &arguments) {
        return run(QStringLiteral("xset"),
                   QStringList{QStringLiteral("-display"), outer, QStringLiteral("r")} + arguments);
    };
    ASSERT_TRUE(set({QStringLiteral("on")}));
    ASSERT_TRUE(set({QStringLiteral("rate"), QStringLiteral("200"), QStringLiteral("40")}));
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(pressHotKey());
    settle(900);
    EXPECT_TRUE(set({QStringLiteral("off")}));
    EXPECT_EQ(fired, 1);
    int releases = 0;
    for (const auto &key : target.keys())
        releases += key.key == keyE && !key.press ? 1 : 0;
    EXPECT_GT(releases, 3) << "the keyboard did not repeat";
}
