#include "PindleMac/platform/linux/SystemQuestions.h"
#include "PindleMac/platform/linux/questions/QuestionDialog.h"
#include "PindleMac/platform/linux/questions/QuestionQueue.h"
#include "ServicesSupport.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace pindle {
namespace {

const Question sample{QStringLiteral("“Pindle” would like to <b>add</b> events."),
                      QStringLiteral("It adds them."), QStringLiteral("Don’t Allow"),
                      QStringLiteral("Allow")};

struct Questions : testing::Test {
    SystemQuestions questions;
    QuestionQueue queue{questions};
    QList<QuestionAnswer> answers;

    void ask(const Question &question = sample) {
        queue.ask(question, [this](QuestionAnswer answer) { answers.append(answer); });
    }
    /// Asks and waits until the window has the keyboard.
    QuestionDialog *shown() {
        ask();
        EXPECT_TRUE(queue.current());
        EXPECT_TRUE(QTest::qWaitForWindowActive(queue.current()));
        return queue.current();
    }
    void expect(QuestionAnswer answer) {
        EXPECT_TRUE(answers.isEmpty()) << "answered in the key's own frame";
        EXPECT_TRUE(waitUntil([this] { return answers.size() == 1; }));
        EXPECT_EQ(answers, QList<QuestionAnswer>{answer});
        EXPECT_FALSE(queue.current());
    }
};

TEST_F(Questions, enterGivesTheSafeAnswer) {
    QuestionDialog *dialog = shown();
    EXPECT_EQ(dialog->focusWidget(), dialog->refuseButton());
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    expect(QuestionAnswer::refused);
}

TEST_F(Questions, tabThenEnterAllows) {
    QuestionDialog *dialog = shown();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(dialog->focusWidget(), dialog->acceptButton());
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    expect(QuestionAnswer::accepted);
}

TEST_F(Questions, tabComesRoundToTheSafeAnswer) {
    QuestionDialog *dialog = shown();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Space);
    expect(QuestionAnswer::refused);
}

TEST_F(Questions, escapeIsNoAnswer) {
    QuestionDialog *dialog = shown();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    expect(QuestionAnswer::none);
}

TEST_F(Questions, closingTheWindowIsNoAnswer) {
    shown()->close();
    expect(QuestionAnswer::none);
}

TEST_F(Questions, aClickAnswers) {
    QTest::mouseClick(shown()->acceptButton(), Qt::LeftButton);
    expect(QuestionAnswer::accepted);
}

TEST_F(Questions, asItIsShownItIsCountedAndBlocksNothing) {
    ask();
    EXPECT_EQ(questions.shown, 1);
    EXPECT_FALSE(queue.current()->isModal());
    EXPECT_TRUE(queue.current()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    queue.current()->close();
    expect(QuestionAnswer::none);
}

TEST_F(Questions, anAnsweredOneIsCountedUntilTheKeyboardIsBack) {
    ask();
    queue.current()->acceptButton()->click();
    ASSERT_TRUE(waitUntil([this] { return answers.size() == 1; }));
    EXPECT_FALSE(queue.current());
    EXPECT_EQ(questions.shown, 1);
    EXPECT_TRUE(waitUntil([this] { return questions.shown == 0; }, std::chrono::seconds(2)));
}

TEST_F(Questions, thereIsOneAtATime) {
    Question second = sample;
    second.text = QStringLiteral("Another?");
    ask();
    ask(second);
    EXPECT_EQ(questions.shown, 1);
    EXPECT_EQ(queue.current()->accessibleName(), sample.text);
    queue.current()->acceptButton()->click();
    ASSERT_TRUE(waitUntil([this] { return answers.size() == 1; }));
    ASSERT_TRUE(queue.current());
    EXPECT_EQ(queue.current()->accessibleName(), second.text);
    queue.current()->refuseButton()->click();
    ASSERT_TRUE(waitUntil([this] { return answers.size() == 2; }));
    EXPECT_EQ(answers, (QList<QuestionAnswer>{QuestionAnswer::accepted, QuestionAnswer::refused}));
}

TEST_F(Questions, anAnswerMayAskTheNextQuestion) {
    queue.ask(sample, [this](QuestionAnswer) { ask(); });
    queue.current()->acceptButton()->click();
    ASSERT_TRUE(waitUntil([this] { return queue.current() && queue.current()->isVisible(); }));
    queue.current()->close();
    expect(QuestionAnswer::none);
}

TEST_F(Questions, twoClicksAreOneAnswer) {
    QuestionDialog *dialog = shown();
    dialog->acceptButton()->click();
    dialog->refuseButton()->click();
    dialog->close();
    expect(QuestionAnswer::accepted);
}

TEST_F(Questions, screenReadersHearTheQuestionAndTheButtons) {
    QuestionDialog *dialog = shown();
    const auto *window = QAccessible::queryAccessibleInterface(dialog);
    EXPECT_EQ(window->text(QAccessible::Name), sample.text);
    EXPECT_EQ(window->text(QAccessible::Description), sample.details);
    EXPECT_EQ(window->role(), QAccessible::Dialog);
    const auto *accept = QAccessible::queryAccessibleInterface(dialog->acceptButton());
    EXPECT_EQ(accept->text(QAccessible::Name), sample.accept);
    dialog->close();
    expect(QuestionAnswer::none);
}

TEST_F(Questions, itsTextIsPlain) {
    ask();
    for (const QLabel *label : queue.current()->findChildren<QLabel *>())
        EXPECT_TRUE(!label->pixmap().isNull() || label->textFormat() == Qt::PlainText);
    queue.current()->close();
    expect(QuestionAnswer::none);
}

TEST_F(Questions, itStandsInTheMiddleOfThePointersScreen) {
    QuestionDialog *dialog = shown();
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    const QPoint off = dialog->frameGeometry().center() - middle;
    EXPECT_LT(off.manhattanLength(), 60);
    dialog->close();
    expect(QuestionAnswer::none);
}

TEST_F(Questions, theKeyboardGoesBackToTheWindowThatHadIt) {
    QLineEdit before;
    before.show();
    before.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&before));
    QuestionDialog *dialog = shown();
    EXPECT_FALSE(before.isActiveWindow());
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    expect(QuestionAnswer::none);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&before));
}

TEST_F(Questions, theKeyboardGoesToTheProgramsWindowThatWasJustClicked) {
    QLineEdit clicked;
    clicked.setAttribute(Qt::WA_ShowWithoutActivating);
    clicked.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&clicked));
    ASSERT_FALSE(clicked.isActiveWindow());
    QuestionDialog *dialog = shown();
    QTest::mouseClick(dialog->acceptButton(), Qt::LeftButton);
    expect(QuestionAnswer::accepted);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&clicked));
}

TEST_F(Questions, aQueueThatEndsTakesItsWindowAlong) {
    auto other = std::make_unique<QuestionQueue>(questions);
    other->ask(sample, [this](QuestionAnswer answer) { answers.append(answer); });
    EXPECT_EQ(questions.shown, 1);
    other->current()->close();
    other.reset();
    EXPECT_EQ(questions.shown, 0);
    EXPECT_FALSE(waitUntil([this] { return !answers.isEmpty(); }, std::chrono::milliseconds(50)));
}

} // namespace
} // namespace pindle
