#pragma once

namespace pindle {

/// How many of the platform's own questions have the keyboard, or gave it back a moment ago. Main
/// thread.
struct SystemQuestions {
    int shown = 0;
};

} // namespace pindle
