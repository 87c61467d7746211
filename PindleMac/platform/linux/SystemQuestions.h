#pragma once

namespace pindle {

/// How many of the platform's own questions are on screen. Main thread.
struct SystemQuestions {
    int shown = 0;
};

} // namespace pindle
