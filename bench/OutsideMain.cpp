// Takes the time of another program as its user does: from outside.
//
// usage: outside-bench OUTPUT start COUNT PROGRAM [ARGUMENT...]     PROGRAM is a path
//        outside-bench OUTPUT window COUNT WINDOW LETTER [X Y]      a click at X,Y hides the window

#include "bench/StartWatch.h"
#include "bench/WindowWatch.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

using namespace pindle::bench;

int usage() {
    std::fputs("usage: outside-bench OUTPUT start COUNT PROGRAM [ARGUMENT...]\n"
               "       outside-bench OUTPUT window COUNT WINDOW LETTER [X Y]\n",
               stderr);
    return EXIT_FAILURE;
}

bool watchWindow(int argc, char **argv, Samples &samples) {
    WindowPlan plan{static_cast<xcb_window_t>(std::strtoul(argv[4], nullptr, 0)), argv[5][0],
                    std::atoi(argv[3]), std::nullopt};
    if (argc == 8)
        plan.closeButton = {std::atoi(argv[6]), std::atoi(argv[7])};
    return WindowWatch(plan, samples).run();
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 5)
        return usage();
    const std::string_view mode = argv[2];
    Samples samples;
    bool through = false;
    if (mode == "start") {
        std::vector<char *> command(argv + 4, argv + argc);
        command.push_back(nullptr);
        through = watchStarts(command, std::atoi(argv[3]), samples);
    } else if (mode == "window" && (argc == 6 || argc == 8)) {
        through = watchWindow(argc, argv, samples);
    } else {
        return usage();
    }
    return through && samples.write(argv[1]) ? EXIT_SUCCESS : EXIT_FAILURE;
}
