#include "PindleMac/platform/linux/accessibility/BusConnection.h"

#include <algorithm>
#include <cstdlib>

namespace pindle {

namespace {

/// Waits are cut into pieces of this length, so that the end of the program is not held up.
constexpr std::chrono::microseconds kWaitPiece{50'000};
/// Answers are awaited by this connection's own deadlines.
constexpr uint64_t kNoTimeout = UINT64_MAX;

struct SlotRelease {
    void operator()(sd_bus_slot *slot) const { sd_bus_slot_unref(slot); }
};
using Slot = std::unique_ptr<sd_bus_slot, SlotRelease>;

struct Expected {
    BusMessage answer;
    std::size_t *missing = nullptr;
};

int onAnswer(sd_bus_message *message, void *userdata, sd_bus_error * /*error*/) {
    auto *expected = static_cast<Expected *>(userdata);
    if (sd_bus_message_is_method_error(message, nullptr) <= 0)
        expected->answer.reset(sd_bus_message_ref(message));
    --*expected->missing;
    return 0;
}

} // namespace

std::string sessionBusAddress() {
    if (const char *address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return address;
    const char *folder = std::getenv("XDG_RUNTIME_DIR");
    return folder ? "unix:path=" + std::string(folder) + "/bus" : std::string();
}

std::unique_ptr<BusConnection> BusConnection::open(const std::string &address, Deadline deadline,
                                                   const std::atomic<bool> &cancelled) {
    sd_bus *bus = nullptr;
    if (sd_bus_new(&bus) < 0)
        return nullptr;
    std::unique_ptr<BusConnection> connection(new BusConnection(bus, cancelled));
    if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, 1) < 0 ||
        sd_bus_start(bus) < 0)
        return nullptr;
    try {
        while (sd_bus_is_ready(bus) <= 0) {
            if (!connection->processArrived())
                return nullptr;
            if (sd_bus_is_ready(bus) <= 0)
                connection->waitUntil(deadline);
        }
    } catch (const std::exception &) {
        return nullptr;
    }
    return connection;
}

BusConnection::BusConnection(sd_bus *bus, const std::atomic<bool> &cancelled)
    : bus_(bus)
    , cancelled_(cancelled) {}

BusConnection::~BusConnection() {
    sd_bus_close(bus_);
    sd_bus_unref(bus_);
}

BusMessage BusConnection::method(const std::string &service, const std::string &path,
                                 const char *interface, const char *member) {
    sd_bus_message *message = nullptr;
    if (sd_bus_message_new_method_call(bus_, &message, service.c_str(), path.c_str(), interface,
                                       member) < 0)
        throw BusLost();
    return BusMessage(message);
}

BusMessage BusConnection::property(const std::string &service, const std::string &path,
                                   const char *interface, const char *name) {
    auto message = method(service, path, "org.freedesktop.DBus.Properties", "Get");
    sd_bus_message_append(message.get(), "ss", interface, name);
    return message;
}

std::vector<BusMessage> BusConnection::exchange(const std::vector<BusMessage> &calls,
                                                Deadline deadline,
                                                std::chrono::milliseconds timeout) {
    std::size_t missing = calls.size();
    std::vector<Expected> expected(calls.size());
    std::vector<Slot> slots; // released before what they point to
    slots.reserve(calls.size());
    for (std::size_t i = 0; i < calls.size(); ++i) {
        expected[i].missing = &missing;
        sd_bus_slot *slot = nullptr;
        if (sd_bus_call_async(bus_, &slot, calls[i].get(), onAnswer, &expected[i], kNoTimeout) < 0)
            throw BusLost();
        slots.emplace_back(slot);
    }
    const Deadline end = std::min(deadline, std::chrono::steady_clock::now() + timeout);
    for (;;) {
        // On the loss of the connection what is missing is answered with errors first.
        if (!processArrived() || !isOpen())
            throw BusLost();
        if (missing == 0)
            break;
        waitUntil(end);
    }
    std::vector<BusMessage> answers;
    answers.reserve(expected.size());
    for (Expected &one : expected)
        answers.push_back(std::move(one.answer));
    return answers;
}

BusMessage BusConnection::call(BusMessage message, Deadline deadline,
                               std::chrono::milliseconds timeout) {
    std::vector<BusMessage> calls;
    calls.push_back(std::move(message));
    return std::move(exchange(calls, deadline, timeout).front());
}

bool BusConnection::processArrived() {
    int result = 0;
    do
        result = sd_bus_process(bus_, nullptr);
    while (result > 0);
    return result == 0;
}

/// Until something arrives, or a piece of the wait is over. Throws BusSilent beyond `deadline`.
void BusConnection::waitUntil(Deadline deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0 || cancelled_)
        throw BusSilent();
    if (sd_bus_wait(bus_, static_cast<uint64_t>(std::min(left, kWaitPiece).count())) < 0)
        throw BusLost();
}

} // namespace pindle
