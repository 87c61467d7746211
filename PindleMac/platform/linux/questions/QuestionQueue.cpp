#include "PindleMac/platform/linux/questions/QuestionQueue.h"

#include "PindleMac/platform/linux/questions/QuestionDialog.h"

namespace pindle {

QuestionQueue::~QuestionQueue() {
    delete dialog_.data();
}

void QuestionQueue::ask(const Question &question, std::function<void(QuestionAnswer)> answered) {
    entries_.push_back({question, std::move(answered)});
    if (entries_.size() == 1)
        showNext();
}

QuestionDialog *QuestionQueue::current() const {
    return dialog_;
}

void QuestionQueue::showNext() {
    dialog_ = new QuestionDialog(entries_.front().question, questions_,
                                 [this](QuestionAnswer answer) { answeredFirst(answer); });
    dialog_->present();
}

void QuestionQueue::answeredFirst(QuestionAnswer answer) {
    dialog_->deleteLater();
    dialog_.clear();
    const auto answered = std::move(entries_.front().answered);
    entries_.pop_front();
    if (!entries_.empty())
        showNext();
    answered(answer);
}

} // namespace pindle
