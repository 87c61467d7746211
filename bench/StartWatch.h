#pragma once

#include "bench/Samples.h"

#include <vector>

namespace pindle::bench {

/// Starts a program again and again and takes the time from the fork until its shortcut is live
/// ("start"): until the X server has had the last of its requests to grab a key. The server's
/// RECORD extension tells of them, so that nothing of the program or its grab is touched. False,
/// with a line on stderr, when a start did not come to a grab in time.
bool watchStarts(const std::vector<char *> &command, int starts, Samples &samples);

} // namespace pindle::bench
