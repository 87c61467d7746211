// The program on a network of the test's choosing: its requests go to an HTTPS server on the
// loopback interface, trusted through its own authority, and are given up sooner.

#include "PindleMac/Program.h"
#include "PindleMac/platform/linux/urlsession/QtURLSession.h"

#include <QSslCertificate>

namespace {

constexpr std::chrono::seconds shortTimeout{1};

class RedirectedSession final : public pindle::URLSession {
public:
    RedirectedSession(int port, const QList<QSslCertificate> &authorities)
        : port_(port)
        , session_({}, authorities) {}

    void dataTask(const pindle::URLRequest &request, Completion completion) override {
        pindle::URLRequest redirected = request;
        redirected.url.setHost(QStringLiteral("localhost"));
        redirected.url.setPort(port_);
        redirected.timeoutInterval = shortTimeout;
        session_.dataTask(redirected, std::move(completion));
    }

private:
    int port_;
    pindle::QtURLSession session_;
};

} // namespace

int main(int argc, char **argv) {
    const int port = qEnvironmentVariableIntValue("PINDLE_TEST_PORT");
    const auto authorities = QSslCertificate::fromPath(qEnvironmentVariable("PINDLE_TEST_CA"));
    if (port <= 0 || authorities.isEmpty())
        qFatal("PINDLE_TEST_PORT and PINDLE_TEST_CA must name the test server");
    pindle::endProcess(pindle::runProgram(
        argc, argv, [&] { return std::make_unique<RedirectedSession>(port, authorities); }));
}
