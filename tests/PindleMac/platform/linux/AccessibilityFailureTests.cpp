#include "tests/PindleMac/platform/linux/AccessibilityFixture.h"

using namespace accessibilitytest;

class AccessibilityHungTest : public AccessibilityDesktop {};
class AccessibilityBusTest : public AccessibilityDesktop {};

TEST_F(AccessibilityHungTest, aHungApplicationInTheBackgroundDoesNotMatter) {
    const auto hung = textWindow("editor", QStringLiteral("background"), 0, 4);
    ASSERT_TRUE(reads(QStringLiteral("back")));
    const auto front = textWindow("editor", QStringLiteral("foreground"), 0, 4);
    ASSERT_TRUE(reads(QStringLiteral("fore")));
    hung->stop();
    const Reading reading = capture();
    EXPECT_EQ(reading.text, QStringLiteral("fore"));
    EXPECT_LE(reading.milliseconds, 250);
    std::printf("with a hung application in the background: %.2f ms\n", reading.milliseconds);
}

TEST_F(AccessibilityHungTest, aHungApplicationInFrontCostsAQuarterSecondAtMost) {
    const auto front = textWindow("editor", QStringLiteral("lunch tomorrow"), 0, 5);
    ASSERT_TRUE(reads(QStringLiteral("lunch")));
    front->stop();
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0;
    qint64 longestGap = 0;
    QTimer tick;
    tick.setTimerType(Qt::PreciseTimer);
    QObject::connect(&tick, &QTimer::timeout, &tick, [&] {
        longestGap = std::max(longestGap, clock.elapsed() - last);
        last = clock.elapsed();
    });
    tick.start(5);
    for (int i = 0; i < 3; ++i) {
        const Reading reading = capture();
        EXPECT_EQ(reading.focus, AXError::kAXErrorCannotComplete);
        EXPECT_LE(reading.milliseconds, 450);
        std::printf("with a hung application in front: %.2f ms\n", reading.milliseconds);
    }
    EXPECT_LE(longestGap, 100);
    front->resume();
    EXPECT_EQ(capture().text, QStringLiteral("lunch")) << "the next capture works";
}

TEST_F(AccessibilityHungTest, anApplicationHangingLaterCostsNoMoreThanTheCapturesDeadline) {
    const auto front = textWindow("editor", QStringLiteral("lunch tomorrow"), 5, 5);
    ASSERT_TRUE(QTest::qWaitFor([&] { return capture().error == kSuccess; }, 5000));
    QElapsedTimer clock;
    clock.start();
    const Reading reading = capture();
    ASSERT_EQ(reading.error, kSuccess);
    front->stop();
    EXPECT_EQ(copy(*reading.element, "AXSelectedTextRange").error, AXError::kAXErrorCannotComplete);
    EXPECT_EQ(copy(*reading.element, "AXValue").error, AXError::kAXErrorCannotComplete);
    EXPECT_LE(clock.elapsed(), 450);
}

TEST_F(AccessibilityHungTest, aHungOwnerOfPrimaryCostsAQuarterSecondAtMost) {
    const auto program = xterm(QStringLiteral("review on Monday"));
    selectFirstLine();
    ASSERT_TRUE(QTest::qWaitFor([&] { return capture().error == kSuccess; }, 3000));
    program->stop();
    const Reading reading = capture();
    EXPECT_NE(reading.error, kSuccess);
    EXPECT_LE(reading.milliseconds, 450);
    program->resume();
    EXPECT_TRUE(QTest::qWaitFor([&] { return capture().error == kSuccess; }, 3000));
}

TEST_F(AccessibilityHungTest, endingTheProgramDoesNotWaitForAHungApplication) {
    const auto front = textWindow("editor", QStringLiteral("lunch"), 0, 5);
    ASSERT_TRUE(reads(QStringLiteral("lunch")));
    front->stop();
    bool completed = false;
    accessibility->AXUIElementCopyAttributeValue(accessibility->AXUIElementCreateSystemWide(),
                                                 QStringLiteral("AXFocusedUIElement"),
                                                 [&](auto) { completed = true; });
    QTest::qWait(20);
    QElapsedTimer clock;
    clock.start();
    accessibility.reset();
    EXPECT_LE(clock.elapsed(), 120);
    QTest::qWait(300);
    EXPECT_FALSE(completed);
}

class AccessibilityTrustTest : public AccessibilityDesktop {
protected:
    void TearDown() override {
        accessibility.reset(); // it tells what it observes to the test's own variables
        setEnabled(true);
    }
};

TEST_F(AccessibilityTrustTest, trustFollowsTheSwitch) {
    setEnabled(true);
    EXPECT_FALSE(accessibility->AXIsProcessTrusted()) << "not known yet";
    const auto becomes = [&](bool trusted) {
        return QTest::qWaitFor([&] { return accessibility->AXIsProcessTrusted() == trusted; },
                               3000);
    };
    EXPECT_TRUE(becomes(true));
    setEnabled(false);
    EXPECT_TRUE(becomes(false));
    setEnabled(true);
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(questions, 0);
}

TEST_F(AccessibilityTrustTest, aTrustedProgramIsAskedNothing) {
    setEnabled(true);
    accessibility->AXIsProcessTrustedWithOptions(true); // not known yet
    ASSERT_TRUE(QTest::qWaitFor([&] { return accessibility->AXIsProcessTrusted(); }, 3000));
    EXPECT_TRUE(accessibility->AXIsProcessTrustedWithOptions(true));
    QTest::qWait(200);
    EXPECT_EQ(questions, 0);
}

TEST_F(AccessibilityTrustTest, onlyAPromptAsks) {
    setEnabled(false);
    EXPECT_FALSE(accessibility->AXIsProcessTrusted());
    EXPECT_FALSE(accessibility->AXIsProcessTrustedWithOptions(false));
    QTest::qWait(200);
    EXPECT_EQ(questions, 0);
}

TEST_F(AccessibilityTrustTest, yesSwitchesAccessibilityOnAndNoLeavesItOff) {
    setEnabled(false);
    EXPECT_FALSE(accessibility->AXIsProcessTrustedWithOptions(true));
    EXPECT_FALSE(accessibility->AXIsProcessTrustedWithOptions(true));
    ASSERT_TRUE(QTest::qWaitFor([&] { return questions > 0; }, 3000));
    EXPECT_FALSE(accessibility->AXIsProcessTrustedWithOptions(true));
    QTest::qWait(200);
    EXPECT_EQ(questions, 1) << "one question at a time";
    answerQuestion(false);
    QTest::qWait(200);
    EXPECT_FALSE(accessibility->AXIsProcessTrusted());

    accessibility->AXIsProcessTrustedWithOptions(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return questions == 2; }, 3000));
    answerQuestion(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return accessibility->AXIsProcessTrusted(); }, 3000));
}

TEST_F(AccessibilityTrustTest, theSwitchIsWorkedFromHereAndEachChangeIsTold) {
    setEnabled(false);
    QList<bool> told;
    accessibility->observeTrust([&] { told.append(accessibility->AXIsProcessTrusted()); });
    accessibility->prepare();
    for (const bool on : {true, false, true}) {
        told.clear();
        accessibility->setSwitchedOn(on);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !told.isEmpty(); }, 3000));
        EXPECT_EQ(told, QList<bool>{on});
        EXPECT_EQ(accessibility->AXIsProcessTrusted(), on);
    }
    accessibility->setSwitchedOn(true);
    QTest::qWait(300);
    EXPECT_EQ(told, QList<bool>{true}) << "told of a change that was none";
    EXPECT_EQ(questions, 0);
}

TEST_F(AccessibilityTrustTest, aSwitchWorkedByAnotherProgramIsToldToo) {
    setEnabled(true);
    int told = 0;
    accessibility->observeTrust([&] { ++told; });
    accessibility->prepare();
    ASSERT_TRUE(QTest::qWaitFor([&] { return told == 1; }, 3000));
    setEnabled(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return told == 2; }, 3000));
    EXPECT_FALSE(accessibility->AXIsProcessTrusted());
}

TEST_F(AccessibilityTrustTest, anAnswerAfterTheEndDoesNoHarm) {
    setEnabled(false);
    accessibility->AXIsProcessTrustedWithOptions(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return questions == 1; }, 3000));
    accessibility.reset();
    answerQuestion(true);
}

namespace {

/// The process that owns a name of the session bus.
pid_t ownerOf(const QString &name) {
    QProcess process;
    process.start(QStringLiteral("dbus-send"),
                  {QStringLiteral("--session"), QStringLiteral("--print-reply=literal"),
                   QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/"),
                   QStringLiteral("org.freedesktop.DBus.GetConnectionUnixProcessID"),
                   QStringLiteral("string:") + name});
    process.waitForFinished(3000);
    return process.readAllStandardOutput().trimmed().split(' ').last().toInt();
}

} // namespace

TEST_F(AccessibilityBusTest, theBusMayGoAndComeBack) {
    const auto before = textWindow("line", QStringLiteral("dinner"), 0, 6);
    ASSERT_TRUE(reads(QStringLiteral("dinner")));
    accessibility->prepare();
    const pid_t launcher = ownerOf(QStringLiteral("org.a11y.Bus"));
    ASSERT_GT(launcher, 0);
    ASSERT_EQ(kill(launcher, SIGTERM), 0);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return ownerOf(QStringLiteral("org.a11y.Bus")) != launcher; }, 5000));
    EXPECT_LE(capture().milliseconds, 450);
    const auto after = textWindow("line", QStringLiteral("supper at home"), 0, 6);
    EXPECT_TRUE(reads(QStringLiteral("supper")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return accessibility->AXIsProcessTrusted(); }, 3000));
}

TEST_F(AccessibilityBusTest, withoutASessionBusPrimaryIsStillRead) {
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    const auto program = xterm(QStringLiteral("review on Monday"));
    selectFirstLine();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return capture().text.trimmed() == QStringLiteral("review on Monday"); }, 3000));
    EXPECT_FALSE(accessibility->AXIsProcessTrusted());
    accessibility.reset(); // its thread reads the environment
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
}
