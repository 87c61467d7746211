#include "bench/StartWatch.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <xcb/record.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

extern char **environ;

namespace pindle::bench {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds firstGrabWithin{10000};
/// A program grabs its combination once per state of the lock keys; after this silence it was all.
constexpr std::chrono::milliseconds silence{400};
/// For the program to come to rest before it is ended, and for its end to be digested.
constexpr std::chrono::milliseconds rest{300};
constexpr std::chrono::milliseconds endWithin{5000};
constexpr std::uint8_t grabKeyRequest = 33; ///< X11 core protocol
constexpr std::uint8_t fromClient = 1;      ///< category of recorded data

/// Tells of the requests to grab a key that any client sends.
class GrabRecord {
public:
    GrabRecord()
        : control_(xcb_connect(nullptr, nullptr))
        , data_(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(control_) || xcb_connection_has_error(data_))
            return;
        const xcb_record_client_spec_t clients = XCB_RECORD_CS_ALL_CLIENTS;
        xcb_record_range_t range;
        std::memset(&range, 0, sizeof range);
        range.core_requests = {grabKeyRequest, grabKeyRequest};
        const auto context = xcb_generate_id(control_);
        std::free(xcb_request_check(control_, xcb_record_create_context_checked(
                                                  control_, context, 0, 1, 1, &clients, &range)));
        cookie_ = xcb_record_enable_context(data_, context);
        xcb_flush(data_);
    }
    ~GrabRecord() {
        xcb_disconnect(data_);
        xcb_disconnect(control_);
    }
    GrabRecord(const GrabRecord &) = delete;
    GrabRecord &operator=(const GrabRecord &) = delete;

    /// When the next request came, or zero when none came in time.
    Instant next(std::chrono::milliseconds within) {
        const auto end = std::chrono::steady_clock::now() + within;
        for (;;) {
            void *reply = nullptr;
            while (xcb_poll_for_reply(data_, cookie_.sequence, &reply, nullptr) && reply) {
                const Instant at = now();
                const auto category =
                    static_cast<xcb_record_enable_context_reply_t *>(reply)->category;
                std::free(reply);
                if (category == fromClient)
                    return at;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                end - std::chrono::steady_clock::now());
            pollfd socket{xcb_get_file_descriptor(data_), POLLIN, 0};
            if (left.count() <= 0 || poll(&socket, 1, static_cast<int>(left.count())) <= 0)
                return 0;
        }
    }

private:
    xcb_connection_t *control_;
    xcb_connection_t *data_;
    xcb_record_enable_context_cookie_t cookie_{};
};

pid_t spawn(const std::vector<char *> &command) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    pid_t pid = -1;
    if (posix_spawn(&pid, command[0], &actions, nullptr, command.data(), environ) != 0)
        pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

void end(pid_t pid) {
    kill(pid, SIGTERM);
    const auto last = std::chrono::steady_clock::now() + endWithin;
    while (waitpid(pid, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > last)
            kill(pid, SIGKILL);
        std::this_thread::sleep_for(5ms);
    }
}

bool watchStart(const std::vector<char *> &command, GrabRecord &record, Samples &samples) {
    const Instant from = now();
    const pid_t pid = spawn(command);
    Instant last = pid > 0 ? record.next(firstGrabWithin) : 0;
    const bool grabbed = last != 0;
    while (const Instant further = grabbed ? record.next(silence) : 0)
        last = further;
    if (grabbed)
        samples.add("start", from, last);
    else
        std::fprintf(stderr, "outside-bench: %s did not come to a grab\n", command[0]);
    std::this_thread::sleep_for(rest);
    if (pid > 0)
        end(pid);
    std::this_thread::sleep_for(rest);
    return grabbed;
}

} // namespace

bool watchStarts(const std::vector<char *> &command, int starts, Samples &samples) {
    GrabRecord record;
    for (int i = 0; i < starts; ++i) {
        if (!watchStart(command, record, samples))
            return false;
    }
    return true;
}

} // namespace pindle::bench
