#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pindle::bench {

/// An instant of the monotonic clock, in nanoseconds; the same clock in every process.
using Instant = std::int64_t;

Instant now();

/// The samples of several figures, in milliseconds.
class Samples {
public:
    void add(const std::string &figure, Instant from, Instant to);
    /// Writes an object with an array of numbers per figure, as JSON; false when that failed.
    bool write(const std::string &path) const;

private:
    std::map<std::string, std::vector<double>> figures_;
};

} // namespace pindle::bench
