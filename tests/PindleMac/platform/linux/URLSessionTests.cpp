#include "PindleMac/platform/linux/urlsession/QtURLSession.h"
#include "ServicesSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSemaphore>
#include <QTcpServer>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

namespace pindle {
namespace {

using namespace std::chrono_literals;

/// The test server, started once for the suite.
class Server {
public:
    Server() {
        const QString script = QStringLiteral(PINDLE_TEST_FOLDER "/https_server.py");
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(QStringLiteral("/usr/bin/python3"), {script, folder_.path()});
        QByteArray line;
        while (!line.endsWith('\n') && process_.waitForReadyRead(20'000))
            line += process_.readAllStandardOutput();
        const QList<QByteArray> ports = line.trimmed().split(' ');
        port_ = ports.value(0).toInt();
        otherPort_ = ports.value(1).toInt();
        authorities_ = QSslCertificate::fromPath(folder_.filePath(QStringLiteral("ca.pem")));
    }
    ~Server() {
        process_.closeWriteChannel();
        process_.waitForFinished(5'000);
    }

    bool isUp() const { return port_ > 0 && !authorities_.isEmpty(); }
    int port() const { return port_; }
    int otherPort() const { return otherPort_; }
    QList<QSslCertificate> authorities() const { return authorities_; }
    /// The requests since the last call, each as its bytes. The server goes on writing meanwhile:
    /// what it has not finished is left for the next call.
    QList<QByteArray> takeRequests() {
        constexpr QByteArrayView end("\n====\n");
        const QByteArray all = contents(folder_.filePath(QStringLiteral("requests")));
        QList<QByteArray> result;
        for (qsizetype to = all.indexOf(end, taken_); to >= 0; to = all.indexOf(end, taken_)) {
            result.append(all.mid(taken_, to - taken_));
            taken_ = to + end.size();
        }
        return result;
    }

private:
    QTemporaryDir folder_;
    QProcess process_;
    QList<QSslCertificate> authorities_;
    qsizetype taken_ = 0; ///< bytes of the requests
    int port_ = 0;
    int otherPort_ = 0;
};

struct Transfers : testing::Test {
    static inline std::unique_ptr<Server> server;
    static void SetUpTestSuite() {
        qputenv("no_proxy", "localhost,127.0.0.1");
        for (const char *name : {"http_proxy", "https_proxy", "all_proxy"})
            qunsetenv(name);
        server = std::make_unique<Server>();
    }
    static void TearDownTestSuite() { server.reset(); }

    void SetUp() override {
        ASSERT_TRUE(server->isUp());
        server->takeRequests();
        session = std::make_unique<QtURLSession>(QtURLSession::LocalHosts(), server->authorities());
    }

    std::unique_ptr<QtURLSession> session;

    QUrl at(const QString &path, int port = 0) const {
        return QUrl(
            QStringLiteral("https://localhost:%1%2").arg(port ? port : server->port()).arg(path));
    }
    static URLRequest post(const QUrl &url, std::chrono::seconds timeout = 20s) {
        return {url, "POST", {{"Content-Type", "application/json"}}, "{\"text\":\"Tea\"}", timeout};
    }
    URLResult result(const URLRequest &request) {
        std::optional<URLResult> answer;
        session->dataTask(request, [&](URLResult got) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            EXPECT_FALSE(answer) << "completed twice";
            answer = std::move(got);
        });
        EXPECT_FALSE(answer) << "completed in the caller's frame";
        EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }, 40s));
        return answer.value_or(URLResult());
    }
    QString error(const URLRequest &request) {
        const URLResult got = result(request);
        return got.error ? got.error->localizedDescription() : QStringLiteral("(none)");
    }
    QString error(const QString &path) { return error(post(at(path))); }
};

TEST_F(Transfers, aPostArrivesExactlyAsGiven) {
    const URLResult got = result(post(at(QStringLiteral("/ok"))));
    ASSERT_FALSE(got.error) << got.error->what();
    EXPECT_TRUE(got.response.isHTTP);
    EXPECT_EQ(got.response.statusCode, 200);
    EXPECT_EQ(got.data, "{\"success\":true}");

    const auto requests = server->takeRequests();
    ASSERT_EQ(requests.size(), 1);
    const auto headEnd = requests.first().indexOf("\r\n\r\n");
    EXPECT_EQ(requests.first().mid(headEnd + 4), "{\"text\":\"Tea\"}");
    QList<QByteArray> lines = requests.first().left(headEnd).split('\n');
    for (QByteArray &line : lines)
        line = line.trimmed();
    EXPECT_EQ(lines.takeFirst(), "POST /ok HTTP/1.1");
    std::sort(lines.begin(), lines.end());
    const QList<QByteArray> expected{
        "Accept-Encoding: identity",
        "Accept-Language: *",
        "Connection: close",
        "Content-Length: 14",
        "Content-Type: application/json",
        "Host: localhost:" + QByteArray::number(server->port()),
        "User-Agent: Pindle",
    };
    EXPECT_EQ(lines, expected);
}

TEST_F(Transfers, anEmptyAndALargeBodyArriveWhole) {
    for (const qsizetype size : {0, 1, 70'000, 1'000'000}) {
        URLRequest request = post(at(QStringLiteral("/ok")));
        request.httpBody = QByteArray(size, 'x');
        EXPECT_FALSE(result(request).error) << size;
        const auto requests = server->takeRequests();
        ASSERT_EQ(requests.size(), 1);
        EXPECT_EQ(requests.first().size() - requests.first().indexOf("\r\n\r\n") - 4, size);
    }
}

TEST_F(Transfers, everyStatusIsAReplyWithItsBody) {
    struct {
        const char *path;
        int status;
        const char *body;
    } const cases[] = {
        {"/empty", 204, ""},       {"/error", 500, "  it broke \n"},
        {"/blank", 503, ""},       {"/bad", 400, "{\"error\":\"no\"}"},
        {"/missing", 404, "gone"}, {"/unauthorized", 401, "who are you"},
        {"/teapot", 418, "tea"},   {"/nowhere", 302, "moved"},
    };
    for (const auto &c : cases) {
        const URLResult got = result(post(at(QString::fromLatin1(c.path))));
        EXPECT_FALSE(got.error) << c.path << ": " << got.error->what();
        EXPECT_EQ(got.response.statusCode, c.status) << c.path;
        EXPECT_EQ(got.data, c.body) << c.path;
    }
    EXPECT_EQ(server->takeRequests().size(), 8) << "each was sent once";
}

TEST_F(Transfers, cookiesAreNeitherKeptNorSent) {
    result(post(at(QStringLiteral("/cookie"))));
    result(post(at(QStringLiteral("/cookie"))));
    const auto requests = server->takeRequests();
    ASSERT_EQ(requests.size(), 2);
    EXPECT_FALSE(requests.last().toLower().contains("cookie:"));
}

TEST_F(Transfers, aConnectionClosedWithoutAReplyIsNotTriedAgain) {
    EXPECT_EQ(error(QStringLiteral("/close")), QStringLiteral("The network connection was lost."));
    EXPECT_FALSE(waitUntil([] { return false; }, 300ms));
    EXPECT_EQ(server->takeRequests().size(), 1);
}

TEST_F(Transfers, aReplyCutShortIsAnError) {
    EXPECT_EQ(error(QStringLiteral("/cut")), QStringLiteral("The network connection was lost."));
    EXPECT_EQ(server->takeRequests().size(), 1);
}

TEST_F(Transfers, aReplyThatIsNoHTTPIsAnError) {
    const URLResult got = result(post(at(QStringLiteral("/garbage"))));
    ASSERT_TRUE(got.error);
    EXPECT_NE(got.error->localizedDescription(), QString());
    EXPECT_FALSE(got.response.isHTTP);
}

TEST_F(Transfers, aSilentServerIsGivenUpAfterTheTimeout) {
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(error(post(at(QStringLiteral("/silence")), 1s)),
              QStringLiteral("The request timed out."));
    EXPECT_GE(timer.elapsed(), 990);
    EXPECT_LT(timer.elapsed(), 1500);
}

TEST_F(Transfers, theTimeoutIsForTheWholeTransferNotForSilence) {
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(error(post(at(QStringLiteral("/trickle")), 1s)),
              QStringLiteral("The request timed out."));
    EXPECT_LT(timer.elapsed(), 1500);
}

TEST_F(Transfers, aHugeReplyIsCutOff) {
    EXPECT_EQ(error(QStringLiteral("/huge")), QStringLiteral("The server's reply is too large."));
}

TEST_F(Transfers, anUntrustedCertificateIsRefusedBeforeAnythingIsSent) {
    session = std::make_unique<QtURLSession>();
    const QString sentence = QStringLiteral("The server's certificate could not be verified.");
    EXPECT_EQ(error(QStringLiteral("/ok")), sentence);
    EXPECT_TRUE(server->takeRequests().isEmpty());
}

TEST_F(Transfers, aCertificateForAnotherHostIsRefused) {
    EXPECT_EQ(error(post(at(QStringLiteral("/ok"), server->otherPort()))),
              QStringLiteral("The server's certificate could not be verified."));
    EXPECT_TRUE(server->takeRequests().isEmpty());
}

TEST_F(Transfers, aRedirectOutOfTheSecureWebIsRefused) {
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    for (const char *status : {"301", "302", "303", "307", "308"}) {
        const QString path = QStringLiteral("/to/%1/http://localhost:%2/x")
                                 .arg(QString::fromLatin1(status))
                                 .arg(plain.serverPort());
        EXPECT_EQ(error(path),
                  QStringLiteral("The server redirected to an address that is not secure."));
    }
    EXPECT_EQ(error(QStringLiteral("/to/307/file:///etc/passwd")),
              QStringLiteral("The server redirected to an address that is not secure."));
    EXPECT_FALSE(plain.hasPendingConnections());
}

TEST_F(Transfers, newerRedirectsRepeatThePostAndOlderOnesBecomeAGet) {
    struct {
        const char *status;
        const char *start;
        const char *body;
    } const cases[] = {{"307", "POST /ok ", "{\"text\":\"Tea\"}"},
                       {"308", "POST /ok ", "{\"text\":\"Tea\"}"},
                       {"301", "GET /ok ", ""},
                       {"302", "GET /ok ", ""},
                       {"303", "GET /ok ", ""}};
    for (const auto &c : cases) {
        const URLResult got =
            result(post(at(QStringLiteral("/to/%1//ok").arg(QString::fromLatin1(c.status)))));
        EXPECT_FALSE(got.error) << c.status << got.error->what();
        EXPECT_EQ(got.response.statusCode, 200) << c.status;
        const auto requests = server->takeRequests();
        ASSERT_EQ(requests.size(), 2);
        EXPECT_TRUE(requests.last().startsWith(c.start)) << requests.last().constData();
        EXPECT_TRUE(requests.last().endsWith(QByteArray("\r\n\r\n") + c.body));
    }
}

TEST_F(Transfers, redirectsAreFollowedToAnEndOnly) {
    QString path = QStringLiteral("/ok");
    for (int i = 0; i < 6; ++i)
        path = QStringLiteral("/to/307/") + path;
    EXPECT_EQ(error(path), QStringLiteral("There were too many redirects."));
    EXPECT_EQ(server->takeRequests().size(), 6);
}

TEST_F(Transfers, whereThereIsNoServerTheErrorSaysSo) {
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const int port = closed.serverPort();
    closed.close();
    EXPECT_EQ(error(post(at(QStringLiteral("/ok"), port))),
              QStringLiteral("Could not connect to the server."));
    EXPECT_EQ(error(post(QUrl(QStringLiteral("https://nothing.invalid/ok")))),
              QStringLiteral("A server with the specified hostname could not be found."));
}

TEST_F(Transfers, plainHttpIsRefusedBeforeAnythingIsSent) {
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    for (const QString &address :
         {QStringLiteral("http://localhost:%1/").arg(plain.serverPort()),
          QStringLiteral("ftp://localhost/"), QStringLiteral("file:///etc/passwd"),
          QStringLiteral("https:///x"), QString()}) {
        EXPECT_EQ(error(post(QUrl(address))),
                  QStringLiteral("The address of the service is not a secure web address."));
    }
    EXPECT_FALSE(plain.hasPendingConnections());
}

TEST_F(Transfers, theMainLoopKeepsTurningMeanwhile) {
    qint64 longest = 0;
    QElapsedTimer gap;
    gap.start();
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, &ticks,
                     [&] { longest = std::max(longest, gap.restart()); });
    ticks.start(1);
    int done = 0;
    QElapsedTimer call;
    for (int i = 0; i < 4; ++i) {
        call.restart();
        session->dataTask(post(at(QStringLiteral("/slow"))), [&](const URLResult &got) {
            EXPECT_FALSE(got.error);
            ++done;
        });
        EXPECT_LT(call.elapsed(), 16);
    }
    ASSERT_TRUE(waitUntil([&] { return done == 4; }));
    EXPECT_LT(longest, 60) << "milliseconds without a turn";
}

TEST_F(Transfers, aSessionThatEndsDropsItsTransfersAtOnce) {
    bool completed = false;
    session->dataTask(post(at(QStringLiteral("/silence"))),
                      [&](const URLResult &) { completed = true; });
    ASSERT_TRUE(waitUntil([] { return !server->takeRequests().isEmpty(); }));
    QElapsedTimer timer;
    timer.start();
    session.reset();
    EXPECT_LT(timer.elapsed(), 300);
    EXPECT_FALSE(waitUntil([&] { return completed; }, 100ms));
}

struct LocalHost : Transfers {
    QList<URLRequest> seen;
    QThread *ranOn = nullptr;
    const QString host = QStringLiteral("conversion.pindle.localhost");
    const QUrl url{QStringLiteral("https://conversion.pindle.localhost/functions/v1/on-install")};

    void serve(const QtURLSession::LocalHost &answer) {
        session = std::make_unique<QtURLSession>(QtURLSession::LocalHosts{{host, answer}},
                                                 server->authorities());
    }
    void echo() {
        serve([this](const URLRequest &request) {
            seen.append(request);
            ranOn = QThread::currentThread();
            return URLResult{{true, 200}, request.httpBody, std::nullopt};
        });
    }
};

TEST_F(LocalHost, itIsAnsweredInsideTheProcessOnTheBackgroundThread) {
    echo();
    const URLResult got = result(post(url));
    EXPECT_EQ(got.data, "{\"text\":\"Tea\"}");
    EXPECT_EQ(got.response.statusCode, 200);
    ASSERT_EQ(seen.size(), 1);
    EXPECT_EQ(seen.first().url, url);
    EXPECT_EQ(seen.first().httpMethod, "POST");
    EXPECT_NE(ranOn, QCoreApplication::instance()->thread());
}

TEST_F(LocalHost, onlyTheExactHostOverHttpsIsTaken) {
    echo();
    for (const char *address :
         {"http://conversion.pindle.localhost/x", "https://x.conversion.pindle.localhost:1/x",
          "https://conversion.pindle.localhost.invalid/x",
          "https://localhost:1/conversion.pindle.localhost"})
        EXPECT_TRUE(result(post(QUrl(QString::fromLatin1(address)))).error) << address;
    EXPECT_TRUE(seen.isEmpty());
}

TEST_F(LocalHost, whatItThrowsIsTheError) {
    serve([](const URLRequest &) -> URLResult { throw PlatformError(QStringLiteral("No.")); });
    EXPECT_EQ(error(post(url)), QStringLiteral("No."));
    serve([](const URLRequest &) -> URLResult { throw std::bad_alloc(); });
    EXPECT_EQ(error(post(url)), QStringLiteral("The request could not be answered."));
}

TEST_F(LocalHost, theMainLoopKeepsTurningWhileItWorks) {
    serve([](const URLRequest &) {
        QThread::msleep(300);
        return URLResult{{true, 200}, "x", std::nullopt};
    });
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++ticks; });
    timer.start(5);
    EXPECT_EQ(result(post(url)).data, "x");
    EXPECT_GT(ticks, 20);
}

TEST_F(LocalHost, oneThatNeverEndsDoesNotHoldUpTheEnd) {
    auto release = std::make_shared<QSemaphore>();
    serve([release](const URLRequest &) {
        release->acquire();
        return URLResult{};
    });
    bool completed = false;
    session->dataTask(post(url), [&](const URLResult &) { completed = true; });
    EXPECT_FALSE(waitUntil([] { return false; }, 50ms));
    QElapsedTimer timer;
    timer.start();
    session.reset();
    EXPECT_LT(timer.elapsed(), 400);
    release->release();
    EXPECT_FALSE(waitUntil([&] { return completed; }, 100ms));
}

} // namespace
} // namespace pindle
