#include <iostream>
#include <string>
#include <string_view>

#include "PindleConversion/ConversionService.h"

namespace {

constexpr std::string_view kHelp =
    "Usage: pindle-convert < requests > replies\n"
    "\n"
    "Reads one JSON object per line with \"text\", \"referenceDate\" (yyyy-MM-dd) and\n"
    "\"referenceTimezone\" (tz identifier), and writes one reply object per line.\n";

} // namespace

int main(int argc, char *argv[]) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--version") {
            std::cout << "pindle-convert " PINDLE_VERSION "\n";
            return 0;
        }
        std::cout << kHelp;
        return argument == "--help" ? 0 : 2;
    }
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
        std::cout << pindle::conversion::answerLine(line) << '\n' << std::flush;
        if (!std::cout)
            return 1;
    }
    return 0;
}
