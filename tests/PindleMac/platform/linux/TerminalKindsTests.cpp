#include "PindleMac/platform/linux/eventposting/PtyHolders.h"
#include "PindleMac/platform/linux/eventposting/TerminalKinds.h"

#include <QProcess>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace pindle;
using namespace std::chrono_literals;

namespace {

constexpr auto budget = 2000ms;

/// The controlling side of a new pseudo-terminal, open as long as the object lives.
struct Pty {
    int file = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    Pty() = default;
    ~Pty() { close(file); }
    Q_DISABLE_COPY_MOVE(Pty)
};

/// A process below this one that opens a pseudo-terminal, in `levels` processes one below another.
class Holder {
public:
    explicit Holder(int levels) {
        const auto script =
            QStringLiteral("if [ $1 -gt 1 ]; then sh -c \"$0\" \"$0\" $(($1 - 1)); true; "
                           "else exec 9<>/dev/ptmx; echo ready; read line; fi");
        process_.start(QStringLiteral("sh"),
                       {QStringLiteral("-c"), script, script, QString::number(levels)});
        process_.waitForReadyRead(3000);
    }
    ~Holder() {
        process_.closeWriteChannel();
        process_.waitForFinished(3000);
    }
    Q_DISABLE_COPY_MOVE(Holder)
    qint64 pid() const { return process_.processId(); }

private:
    QProcess process_;
};

} // namespace

TEST(TerminalKinds, vteTerminalsCopyWithControlInsert) {
    EXPECT_EQ(knownCopyChord({"xfce4-terminal", "Xfce4-terminal"}), CopyChord::controlInsert);
    EXPECT_EQ(knownCopyChord({"gnome-terminal-server", "Gnome-terminal"}),
              CopyChord::controlInsert);
}

TEST(TerminalKinds, otherTerminalsGetNoKeys) {
    for (const char *name : {"XTerm", "UXTerm", "URxvt", "st-256color", "Alacritty", "kitty",
                             "konsole", "org.wezfurlong.wezterm"})
        EXPECT_EQ(knownCopyChord({name, name}), CopyChord::none) << name;
}

TEST(TerminalKinds, aTerminalUnderAnotherNameIsRecognisedByEitherOne) {
    EXPECT_EQ(knownCopyChord({"mail", "XTerm"}), CopyChord::none);
    EXPECT_EQ(knownCopyChord({"xterm", "Mail"}), CopyChord::none);
    // An instance is anybody's choice, so it does not make a VTE terminal.
    EXPECT_EQ(knownCopyChord({"xfce4-terminal", "Something"}), std::nullopt);
}

TEST(TerminalKinds, editorsInWhichTheChordMeansSomethingElseGetNoKeys) {
    EXPECT_EQ(knownCopyChord({"emacs", "Emacs"}), CopyChord::none);
    EXPECT_EQ(knownCopyChord({"gvim", "Gvim"}), CopyChord::none);
}

TEST(TerminalKinds, allOthersAreUnknown) {
    EXPECT_EQ(knownCopyChord({"mousepad", "Mousepad"}), std::nullopt);
    EXPECT_EQ(knownCopyChord({"", ""}), std::nullopt);
    EXPECT_EQ(knownCopyChord({"xterminator", "xterminator"}), std::nullopt);
}

TEST(PtyHolders, aProcessWithoutPseudoTerminalShowsNone) {
    EXPECT_FALSE(mayShowTerminal(getpid(), {}, budget));
}

TEST(PtyHolders, aProcessWithAPseudoTerminalMayShowOne) {
    const Pty pty;
    ASSERT_GE(pty.file, 0);
    EXPECT_TRUE(mayShowTerminal(getpid(), {}, budget));
}

TEST(PtyHolders, aPseudoTerminalOfAProcessBelowCountsAsWell) {
    {
        const Holder holder(1);
        EXPECT_TRUE(mayShowTerminal(getpid(), {}, budget));
    }
    EXPECT_FALSE(mayShowTerminal(getpid(), {}, budget));
    const Holder holder(3);
    EXPECT_TRUE(mayShowTerminal(getpid(), {}, budget));
}

TEST(PtyHolders, aProcessBelowWithWindowsOfItsOwnDoesNotCount) {
    const Holder holder(2);
    EXPECT_FALSE(mayShowTerminal(getpid(), {holder.pid()}, budget));
    EXPECT_TRUE(mayShowTerminal(getpid(), {}, budget));
}

TEST(PtyHolders, whatCannotBeLookedIntoMayShowATerminal) {
    constexpr qint64 nobody = 0x7fffffff;
    EXPECT_TRUE(mayShowTerminal(nobody, {}, budget));
    EXPECT_TRUE(mayShowTerminal(getpid(), {}, budget, "/nonexistent"));
}

TEST(PtyHolders, whereTheTimeDoesNotSufficeATerminalIsAssumed) {
    EXPECT_TRUE(mayShowTerminal(getpid(), {}, -1ms));
}
