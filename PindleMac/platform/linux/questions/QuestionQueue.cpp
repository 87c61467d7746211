#include "PindleMac/platform/linux/questions/QuestionQueue.h"

#include "PindleMac/platform/linux/questions/QuestionDialog.h"

#include <QTimer>

namespace pindle {

namespace {

/// How long after its answer a question still counts as shown. The toolkit tells a window about a
/// tenth of a second late that it lost the keyboard, and a question may be answered sooner.
constexpr std::chrono::milliseconds keyboardReturn{400};

} // namespace

QuestionQueue::~QuestionQueue() {
    delete dialog_.data();
    for (const auto &dialog : answered_)
        delete dialog.data();
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
    std::erase_if(answered_, [](const auto &dialog) { return dialog.isNull(); });
    answered_.push_back(dialog_);
    QTimer::singleShot(keyboardReturn, dialog_, &QObject::deleteLater);
    dialog_.clear();
    const auto answered = std::move(entries_.front().answered);
    entries_.pop_front();
    if (!entries_.empty())
        showNext();
    answered(answer);
}

} // namespace pindle
