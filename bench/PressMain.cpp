// The program, composed by its own runProgram(), with a pair of hands that press its shortcut.
//
// usage: press-bench OUTPUT PRESSES STROKES TITLE

#include "PindleMac/Program.h"
#include "PindleMac/platform/linux/urlsession/QtURLSession.h"
#include "bench/PressBench.h"

#include <QTimer>
#include <cstdio>

namespace {

/// After start-up, for everything to have come to rest.
constexpr std::chrono::milliseconds settling{2000};

} // namespace

int main(int argc, char **argv) {
    if (argc != 5) {
        std::fputs("usage: press-bench OUTPUT PRESSES STROKES TITLE\n", stderr);
        return EXIT_FAILURE;
    }
    const pindle::bench::PressPlan plan{argv[1], std::atoi(argv[2]), std::atoi(argv[3]),
                                        QString::fromUtf8(argv[4])};
    std::unique_ptr<pindle::bench::PressBench> bench;
    return pindle::runProgram(1, argv, [&] {
        QTimer::singleShot(settling, qApp, [&bench, &plan] {
            bench = std::make_unique<pindle::bench::PressBench>(plan);
        });
        return std::make_unique<pindle::QtURLSession>(pindle::QtURLSession::LocalHosts{
            {pindle::embeddedServiceHost(), pindle::answerInProcess}});
    });
}
