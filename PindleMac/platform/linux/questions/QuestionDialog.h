#pragma once

#include "PindleMac/platform/linux/questions/Question.h"

#include <QDialog>
#include <QPointer>

class QPushButton;

namespace pindle {

struct SystemQuestions;

/// The small window of one question: above other windows, in the middle of the pointer's screen,
/// with the keyboard. Enter presses the focused button, Escape closes without an answer. It never
/// blocks; `answered` is called once, from the event loop, after it has left the screen.
class QuestionDialog final : public QDialog {
public:
    QuestionDialog(const Question &question, SystemQuestions &questions,
                   std::function<void(QuestionAnswer)> answered);
    ~QuestionDialog() override;

    /// Shows it and asks for the keyboard, which goes back to where it was when it closes.
    void present();

    QPushButton *refuseButton() const { return refuse_; }
    QPushButton *acceptButton() const { return accept_; }

protected:
    void done(int result) override;

private:
    void layOut(const Question &question);
    void choose(QuestionAnswer answer);
    void countAsShown(bool shown);

    SystemQuestions &questions_;
    std::function<void(QuestionAnswer)> answered_;
    QPointer<QWidget> activeBefore_;
    QPushButton *refuse_ = nullptr;
    QPushButton *accept_ = nullptr;
    QuestionAnswer answer_ = QuestionAnswer::none;
    bool counted_ = false;
};

} // namespace pindle
