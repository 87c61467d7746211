#pragma once

#include "PindleMac/platform/linux/questions/Question.h"

#include <QObject>
#include <QPointer>
#include <deque>
#include <vector>

namespace pindle {

class QuestionDialog;
struct SystemQuestions;

/// Puts the platform's questions to the user, one at a time in the order they were asked. A
/// question on screen when the queue is destroyed closes and stays unanswered. Main thread.
class QuestionQueue final : public QObject {
public:
    /// `questions` outlives the queue.
    explicit QuestionQueue(SystemQuestions &questions)
        : questions_(questions) {}
    ~QuestionQueue() override;

    /// Shows the question now, or after the ones before it.
    void ask(const Question &question, std::function<void(QuestionAnswer)> answered);

    /// The window on screen; null when there is none.
    QuestionDialog *current() const;

private:
    struct Entry {
        Question question;
        std::function<void(QuestionAnswer)> answered;
    };
    void showNext();
    void answeredFirst(QuestionAnswer answer);

    SystemQuestions &questions_;
    std::deque<Entry> entries_; ///< the first is on screen
    QPointer<QuestionDialog> dialog_;
    std::vector<QPointer<QuestionDialog>> answered_; ///< hidden, and still counted as shown
};

} // namespace pindle
