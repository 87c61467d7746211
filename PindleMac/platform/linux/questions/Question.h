#pragma once

#include <QString>
#include <functional>

namespace pindle {

/// A question the platform puts to the user in its own name. Plain text throughout.
struct Question {
    QString text;    ///< the question itself, one sentence
    QString details; ///< what an answer means
    QString refuse;  ///< label of the safe answer, which Enter gives at first
    QString accept;  ///< label of the other answer
    bool operator==(const Question &) const = default;
};

enum class QuestionAnswer {
    none, ///< closed without an answer
    refused,
    accepted,
};

/// Puts a question and returns at once; the answer arrives later, on the main thread, from the
/// event loop.
using AskQuestion =
    std::function<void(const Question &question, std::function<void(QuestionAnswer)> answered)>;

} // namespace pindle
