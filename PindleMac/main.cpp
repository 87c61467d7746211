#include "PindleMac/Program.h"
#include "PindleMac/platform/linux/urlsession/QtURLSession.h"

int main(int argc, char **argv) {
    pindle::endProcess(pindle::runProgram(argc, argv, [] {
        return std::make_unique<pindle::QtURLSession>(pindle::QtURLSession::LocalHosts{
            {pindle::embeddedServiceHost(), pindle::answerInProcess}});
    }));
}
