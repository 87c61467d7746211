#include "bench/Samples.h"

#include <chrono>
#include <fstream>

namespace pindle::bench {

namespace {

constexpr double nanosecondsPerMillisecond = 1e6;

} // namespace

Instant now() {
    const auto sinceBoot = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceBoot).count();
}

void Samples::add(const std::string &figure, Instant from, Instant to) {
    figures_[figure].push_back(static_cast<double>(to - from) / nanosecondsPerMillisecond);
}

bool Samples::write(const std::string &path) const {
    std::ofstream file(path);
    const char *figureSeparator = "{";
    for (const auto &[figure, values] : figures_) {
        file << figureSeparator << '"' << figure << "\":[";
        figureSeparator = ",\n";
        const char *separator = "";
        for (const double value : values) {
            file << separator << value;
            separator = ",";
        }
        file << ']';
    }
    file << "}\n";
    file.close();
    return !file.fail();
}

} // namespace pindle::bench
