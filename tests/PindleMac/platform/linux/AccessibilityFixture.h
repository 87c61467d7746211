#pragma once

#include "PindleMac/platform/linux/accessibility/ActiveApplication.h"
#include "PindleMac/platform/linux/accessibility/AtspiAccessibility.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLineEdit>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <vector>

/// A desktop with real applications, read as the program reads it.
namespace accessibilitytest {

using namespace pindle;
using namespace std::chrono_literals;

constexpr AXError kSuccess = AXError::kAXErrorSuccess;

/// What the three reads of one capture came to.
struct Reading {
    AXError focus = AXError::kAXErrorFailure;
    AXError error = AXError::kAXErrorFailure; ///< of the selected text
    QString text;
    std::optional<AXUIElement> element;
    double milliseconds = 0; ///< focused element and selected text together
};

/// A program with a window, gone when it leaves the scope.
class Program {
public:
    Program(const QString &name, const QStringList &arguments) {
        process_.setStandardOutputFile(QProcess::nullDevice());
        process_.setStandardErrorFile(QProcess::nullDevice());
        process_.setStandardInputFile(QProcess::nullDevice());
        process_.start(name, arguments);
        EXPECT_TRUE(process_.waitForStarted());
    }
    ~Program() {
        resume();
        process_.kill();
        process_.waitForFinished();
    }
    pid_t pid() const { return static_cast<pid_t>(process_.processId()); }
    void stop() const { kill(pid(), SIGSTOP); }
    void resume() const { kill(pid(), SIGCONT); }

private:
    QProcess process_;
};

inline void run(const QString &name, const QStringList &arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QStringLiteral("timeout"), QStringList{QStringLiteral("5"), name} + arguments);
    EXPECT_TRUE(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 6000));
}

inline void press(const QStringList &keys) {
    run(QStringLiteral("xdotool"), QStringList{QStringLiteral("key")} + keys);
}

inline void setEnabled(bool isOn) {
    run(QStringLiteral("dbus-send"),
        {QStringLiteral("--session"), QStringLiteral("--print-reply"),
         QStringLiteral("--dest=org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
         QStringLiteral("org.freedesktop.DBus.Properties.Set"),
         QStringLiteral("string:org.a11y.Status"), QStringLiteral("string:IsEnabled"),
         QStringLiteral("variant:boolean:") +
             (isOn ? QStringLiteral("true") : QStringLiteral("false"))});
}

inline QString windowProgram() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/text_window");
}

class AccessibilityDesktop : public testing::Test {
protected:
    void SetUp() override {
        connection = XConnection::open();
        ASSERT_TRUE(connection);
        accessibility = makeAccessibility();
        // PRIMARY of an earlier test is no one's.
        xcb_set_selection_owner(connection->xcb(), XCB_NONE, XCB_ATOM_PRIMARY, XCB_CURRENT_TIME);
    }

    std::unique_ptr<AtspiAccessibility> makeAccessibility() {
        return std::make_unique<AtspiAccessibility>(*connection, [this](auto answer) {
            ++questions;
            answerQuestion = std::move(answer);
        });
    }

    AXAttributeResult copy(AXUIElement element, const char *attribute) {
        AXAttributeResult result;
        bool arrived = false;
        QEventLoop loop;
        accessibility->AXUIElementCopyAttributeValue(element, QString::fromLatin1(attribute),
                                                     [&](AXAttributeResult answer) {
                                                         result = std::move(answer);
                                                         arrived = true;
                                                         loop.quit();
                                                     });
        EXPECT_FALSE(arrived) << "completed inside the call";
        QTimer::singleShot(3000, &loop, &QEventLoop::quit);
        loop.exec();
        EXPECT_TRUE(arrived);
        return result;
    }

    Reading capture() {
        Reading reading;
        QElapsedTimer clock;
        clock.start();
        const auto focused =
            copy(accessibility->AXUIElementCreateSystemWide(), "AXFocusedUIElement");
        reading.focus = focused.error;
        if (focused.error == kSuccess) {
            reading.element = std::get<AXUIElement>(*focused.value);
            const auto selected = copy(*reading.element, "AXSelectedText");
            reading.error = selected.error;
            if (selected.error == kSuccess)
                reading.text = std::get<QString>(*selected.value);
        }
        reading.milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
        return reading;
    }

    bool isActive(pid_t process) {
        return QTest::qWaitFor([&] { return activeApplication(*connection).process == process; },
                               10000);
    }

    /// Programs take a while until what they show is on the bus.
    bool reads(const QString &text) {
        return QTest::qWaitFor([&] { return capture().text == text; }, 5000);
    }

    std::unique_ptr<Program> textWindow(const char *kind, const QString &text, int start, int end) {
        auto program = std::make_unique<Program>(
            windowProgram(), QStringList{QString::fromLatin1(kind), text, QString::number(start),
                                         QString::number(end)});
        EXPECT_TRUE(isActive(program->pid()));
        return program;
    }

    /// An xterm showing one line.
    std::unique_ptr<Program> xterm(const QString &text,
                                   const QString &executable = QStringLiteral("xterm")) {
        auto program = std::make_unique<Program>(
            executable,
            QStringList{QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"),
                        QStringLiteral("printf '%s\\n' \"$1\"; exec sleep 100"),
                        QStringLiteral("sh"), text});
        EXPECT_TRUE(isActive(program->pid()));
        return program;
    }

    /// Clicks into the active window until that has made a selection.
    void selectByClicks(int x, int y, int clicks) {
        const QString window = QString::number(connection->activeWindow());
        for (int attempt = 0; attempt < 8 && !activeApplication(*connection).ownsPrimary;
             ++attempt) {
            run(QStringLiteral("xdotool"),
                {QStringLiteral("mousemove"), QStringLiteral("--window"), window,
                 QString::number(x), QString::number(y), QStringLiteral("click"),
                 QStringLiteral("--repeat"), QString::number(clicks), QStringLiteral("--delay"),
                 QStringLiteral("20"), QStringLiteral("1")});
            // Longer than any time within which clicks count as one gesture.
            EXPECT_TRUE(
                QTest::qWaitFor([&] { return activeApplication(*connection).ownsPrimary; }, 600) ||
                attempt < 7);
        }
    }

    /// Selects the first line of the active xterm.
    void selectFirstLine() { selectByClicks(30, 8, 3); }

    std::unique_ptr<XConnection> connection;
    int questions = 0;
    std::function<void(bool)> answerQuestion;
    std::unique_ptr<AtspiAccessibility> accessibility;
};

} // namespace accessibilitytest
