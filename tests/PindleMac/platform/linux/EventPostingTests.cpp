#include "PostingFixture.h"

#include "PindleMac/platform/linux/x11/XClients.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <fcntl.h>
#include <unistd.h>

using namespace pindle;
using namespace pindle::test;

namespace {

using Presses = std::vector<std::pair<int, int>>;

class EventPostingOnX11 : public PostingFixture {
protected:
    static bool setLayout(const QString &layout) {
        const bool set = run(QStringLiteral("setxkbmap"), {layout});
        settle(300);
        return set;
    }

    /// Selects everything as a user does, and copies it, until that works: programs get ready at
    /// their own pace. `held` is what their menus ask for.
    bool selectAll(const std::vector<xcb_keycode_t> &held, const QString &text) {
        const auto chord = [&](xcb_keycode_t key) {
            auto keys = held;
            keys.push_back(key);
            target.chord(keys);
        };
        const auto copied = [&] { return QGuiApplication::clipboard()->text().contains(text); };
        for (int attempt = 0; attempt < 10; ++attempt) {
            chord(keyA);
            settle(50);
            chord(keyC);
            if (waitUntil(copied, 500))
                return true;
        }
        return false;
    }

    static QByteArray contents(const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no file>");
    }
};

const Presses controlInsert = {{keyControl, 0}, {keyInsert, XCB_MOD_MASK_CONTROL}};
const Presses controlC = {{keyControl, 0}, {keyC, XCB_MOD_MASK_CONTROL}};

} // namespace

TEST_F(EventPostingOnX11, theChordIsControlCAndNothingElse) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget(), controlC);
    EXPECT_FALSE(target.keys()[2].press);
    EXPECT_EQ(target.keys()[2].key, keyC);
    EXPECT_TRUE(target.keysDown().empty());
}

TEST_F(EventPostingOnX11, onlyTheCopyChordCanBeProduced) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    EXPECT_FALSE(posting->CGEventCreateKeyboardEvent(*source, 9, true));
    EXPECT_FALSE(posting->CGEventCreateKeyboardEvent(*source, 36, false));
    post(true, 0);
    post(false, 0);
    post(true, kCGEventFlagMaskCommand | 0x20000);
    post(false, kCGEventFlagMaskCommand | 0x20000);
    settle();
    EXPECT_TRUE(target.keys().empty());
}

TEST_F(EventPostingOnX11, aKeyUpAloneDoesNothing) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    post(false);
    settle();
    EXPECT_TRUE(target.keys().empty());
}

TEST_F(EventPostingOnX11, aKeyDownWithoutKeyUpLeavesNoKeyDown) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    post(true);
    post(true);
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 2; }));
    posting.reset();
    EXPECT_TRUE(waitUntil([&] { return target.keysDown().empty(); }));
}

TEST_F(EventPostingOnX11, capsLockDoesNotReachTheTargetAndStaysOn) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    target.tap(keyCapsLock);
    ASSERT_EQ(target.lockedModifiers(), XCB_MOD_MASK_LOCK);
    target.forgetKeys();
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget(), controlC);
    EXPECT_EQ(target.lockedModifiers(), XCB_MOD_MASK_LOCK);
    target.tap(keyCapsLock);
    EXPECT_EQ(target.lockedModifiers(), 0);
}

TEST_F(EventPostingOnX11, numLockIsLeftAlone) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    target.tap(keyNumLock);
    target.forgetKeys();
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget().back(),
              std::make_pair(int(keyC), int(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_2)));
    EXPECT_EQ(target.lockedModifiers(), XCB_MOD_MASK_2);
    target.tap(keyNumLock);
}

TEST_F(EventPostingOnX11, modifiersHeldByAProgramAreLiftedForTheChord) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    Actor user;
    for (const auto key : {keySuper, keyShift, keyAlt, keyC})
        user.press(key);
    target.forgetKeys();
    copy();
    ASSERT_TRUE(waitUntil([&] { return pressesOfTarget().size() == 2; }));
    settle(50);
    EXPECT_EQ(pressesOfTarget(), controlC);
    // No real keyboard holds them, so none is pressed again.
    EXPECT_TRUE(target.keysDown().empty());
}

TEST_F(EventPostingOnX11, theKeyIsThatOfTheLetterInTheLayout) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(setLayout(QStringLiteral("dvorak")));
    constexpr int dvorakC = 31;
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget().back().first, dvorakC);
    ASSERT_TRUE(setLayout(QStringLiteral("us")));
}

TEST_F(EventPostingOnX11, whereNoLayoutHasTheLetterTheChordIsControlInsert) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    ASSERT_TRUE(setLayout(QStringLiteral("ru")));
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget(), controlInsert);
    target.forgetKeys();
    // Latin letters in the other layout are enough.
    ASSERT_TRUE(setLayout(QStringLiteral("us,ru")));
    target.lockGroup(1);
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget().back().first, keyC);
    target.lockGroup(0);
    ASSERT_TRUE(setLayout(QStringLiteral("us")));
}

TEST_F(EventPostingOnX11, aVteTerminalGetsControlInsert) {
    ASSERT_TRUE(target.showWindow("xfce4-terminal", "Xfce4-terminal"));
    copy();
    ASSERT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
    EXPECT_EQ(pressesOfTarget(), (Presses{{keyControl, 0}, {keyInsert, XCB_MOD_MASK_CONTROL}}));
}

TEST_F(EventPostingOnX11, aTerminalWithoutCopyChordGetsNoKeys) {
    ASSERT_TRUE(target.showWindow("urxvt", "URxvt"));
    copy();
    settle();
    EXPECT_TRUE(target.keys().empty());
    target.tap(keyE);
    EXPECT_TRUE(waitUntil([&] { return target.keys().size() == 2; }));
}

TEST_F(EventPostingOnX11, anUnknownProgramWithAPseudoTerminalGetsNoKeys) {
    ASSERT_TRUE(target.showWindow("something", "Something"));
    const int pty = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(pty, 0);
    copy();
    settle();
    EXPECT_TRUE(target.keys().empty());
    close(pty);
    copy();
    EXPECT_TRUE(waitUntil([&] { return target.keys().size() == 4; }));
}

TEST_F(EventPostingOnX11, aProgramWithoutWindowClassIsLookedIntoAsWell) {
    ASSERT_TRUE(target.showWindow({}, {}));
    const int pty = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    copy();
    settle();
    close(pty);
    EXPECT_TRUE(target.keys().empty());
}

TEST_F(EventPostingOnX11, aProgramOnAnotherMachineGetsNoKeys) {
    const xcb_window_t window = target.showWindow("editor", "Editor");
    ASSERT_TRUE(window);
    const QByteArray machine = "elsewhere.example";
    xcb_change_property(target.xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLIENT_MACHINE,
                        XCB_ATOM_STRING, 8, uint32_t(machine.size()), machine.constData());
    target.sync();
    copy();
    settle();
    EXPECT_TRUE(target.keys().empty());
}

TEST_F(EventPostingOnX11, whereNoWindowHasTheKeyboardThereAreNoKeys) {
    ASSERT_TRUE(target.showWindow("editor", "Editor"));
    // In this mode keys go to the window under the pointer.
    target.movePointer(150, 150);
    const auto keyboardIsNobodys = [&] {
        const auto focus = xcbReply(
            xcb_get_input_focus_reply(target.xcb(), xcb_get_input_focus(target.xcb()), nullptr));
        return focus && focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT;
    };
    // Window managers give the keyboard back to a window soon: only a chord within counts.
    bool within = false;
    for (int attempt = 0; attempt < 20 && !within; ++attempt) {
        settle(50);
        target.forgetKeys();
        xcb_set_input_focus(target.xcb(), XCB_INPUT_FOCUS_POINTER_ROOT,
                            XCB_INPUT_FOCUS_POINTER_ROOT, XCB_CURRENT_TIME);
        target.sync();
        copy();
        within = keyboardIsNobodys();
    }
    ASSERT_TRUE(within);
    settle();
    EXPECT_TRUE(target.keys().empty());
}

TEST_F(EventPostingOnX11, aTerminalEmbeddedInAnotherWindowGetsNoKeys) {
    const xcb_window_t window = target.showWindow("tabs", "Tabs");
    ASSERT_TRUE(window);
    Actor terminal;
    const xcb_window_t inner = xcb_generate_id(terminal.xcb());
    const uint32_t events[] = {XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(terminal.xcb(), XCB_COPY_FROM_PARENT, inner, window, 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      events);
    const QByteArray text("st\0St\0", 6);
    xcb_change_property(terminal.xcb(), XCB_PROP_MODE_REPLACE, inner, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, uint32_t(text.size()), text.constData());
    xcb_map_window(terminal.xcb(), inner);
    xcb_set_input_focus(terminal.xcb(), XCB_INPUT_FOCUS_PARENT, inner, XCB_CURRENT_TIME);
    terminal.sync();
    copy();
    settle();
    EXPECT_TRUE(terminal.keys().empty());
    EXPECT_TRUE(target.keys().empty());
    target.tap(keyE);
    EXPECT_TRUE(waitUntil([&] { return !terminal.keys().empty(); }));
}

TEST_F(EventPostingOnX11, aRealTextFieldCopies) {
    QPlainTextEdit edit(QStringLiteral("Dinner on Friday at 7 pm"));
    edit.show();
    edit.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&edit));
    edit.selectAll();
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    settle(50);
    QElapsedTimer timer;
    timer.start();
    copy();
    const double posted = double(timer.nsecsElapsed()) / 1e6;
    EXPECT_TRUE(waitUntil([&] {
        return QGuiApplication::clipboard()->text() == QStringLiteral("Dinner on Friday at 7 pm");
    }));
    std::printf("chord: %.2f ms to send, %.2f ms until copied\n", posted,
                double(timer.nsecsElapsed()) / 1e6);
    EXPECT_LT(posted, 250);
    EXPECT_EQ(edit.toPlainText(), QStringLiteral("Dinner on Friday at 7 pm"));
}

TEST_F(EventPostingOnX11, realEditorsCopyAlsoInALayoutWithoutLatinLetters) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("note.txt"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Concert on May 20\n");
    file.close();
    struct Editor {
        QString program, windowClass;
    };
    for (const Editor &editor :
         {Editor{QStringLiteral("mousepad"), QStringLiteral("Mousepad")},
          Editor{QStringLiteral("featherpad"), QStringLiteral("FeatherPad")}}) {
        Program program(editor.program, {path});
        ASSERT_TRUE(program.waitActive(editor.windowClass)) << editor.program.toStdString();
        ASSERT_TRUE(selectAll({keyControl}, QStringLiteral("Concert")));
        for (const char *layout : {"us", "ru", "us,ru"}) {
            ASSERT_TRUE(setLayout(QString::fromLatin1(layout)));
            target.lockGroup(layout == QByteArrayView("us,ru") ? 1 : 0);
            settle(200);
            QGuiApplication::clipboard()->setText(QStringLiteral("before"));
            settle(100);
            copy();
            EXPECT_TRUE(waitUntil([&] {
                return QGuiApplication::clipboard()->text().contains(QStringLiteral("Concert"));
            })) << editor.program.toStdString()
                << " in layout " << layout;
        }
        target.lockGroup(0);
        ASSERT_TRUE(setLayout(QStringLiteral("us")));
    }
}

TEST_F(EventPostingOnX11, aRealXtermReceivesNoBytes) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("bytes"));
    Program xterm(QStringLiteral("xterm"),
                  {QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"),
                   QStringLiteral("stty raw -echo; cat > %1").arg(path)});
    ASSERT_TRUE(xterm.waitActive(QStringLiteral("XTerm")));
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(path); }));
    settle(300);
    copy();
    settle(500);
    EXPECT_EQ(contents(path), "");
    EXPECT_TRUE(xterm.running());
    target.tap(keyE);
    EXPECT_TRUE(waitUntil([&] { return contents(path) == "e"; }));
}

TEST_F(EventPostingOnX11, aRealVteTerminalCopiesAndItsProgramReceivesNothing) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("bytes"));
    Program terminal(QStringLiteral("xfce4-terminal"),
                     {QStringLiteral("--disable-server"), QStringLiteral("-x"),
                      QStringLiteral("sh"), QStringLiteral("-c"),
                      QStringLiteral("echo WORKSHOP; stty -icanon -echo; cat > %1").arg(path)});
    ASSERT_TRUE(terminal.waitActive(QStringLiteral("Xfce4-terminal")));
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(path); }));
    ASSERT_TRUE(selectAll({keyControl, keyShift}, QStringLiteral("WORKSHOP")));
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    settle(100);
    copy();
    EXPECT_TRUE(waitUntil(
        [&] { return QGuiApplication::clipboard()->text().contains(QStringLiteral("WORKSHOP")); }));
    settle(200);
    EXPECT_EQ(contents(path), "");
    EXPECT_TRUE(terminal.running());
    target.tap(keyE);
    EXPECT_TRUE(waitUntil([&] { return contents(path) == "e"; }));
}
