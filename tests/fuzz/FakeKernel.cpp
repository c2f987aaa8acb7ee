#include "FakeKernel.hpp"

#include <cerrno>

#include "FuzzTarget.hpp"

namespace Fuzz {
namespace {

constexpr std::chrono::milliseconds unit{20};
constexpr std::uint64_t failure = 0xff;
constexpr char failureToSend = '\xfe';

FakeKernel* existing = nullptr;

}  // namespace

FakeKernel::FakeKernel(FuzzInput& source) : input(source) {
    existing = this;
}

FakeKernel::~FakeKernel() {
    existing = nullptr;
}

FakeKernel& FakeKernel::current() {
    require(existing != nullptr, "a target that calls the kernel has a fake one");
    return *existing;
}

bool FakeKernel::waitForDatagram(std::chrono::milliseconds limit) {
    if (!announced && !input.isAtEnd()) {
        const std::uint64_t delay = input.number(1);
        fails = delay == failure;
        arrival = elapsed + (fails ? 0 : delay) * unit;
        announced = true;
    }
    require(announced || limit.count() >= 0, "a wait has a limit");
    const bool arrives = announced && (limit.count() < 0 || arrival <= elapsed + limit);
    elapsed = arrives ? std::max(arrival, elapsed) : elapsed + limit;
    return arrives;
}

int FakeKernel::receive(char* buffer, std::size_t room) {
    if (!announced) {
        errno = EAGAIN;
        return -1;
    }
    announced = false;
    if (fails) {
        errno = ECONNREFUSED;
        return -1;
    }
    lastReceived = input.bytes(input.number(2));
    return static_cast<int>(lastReceived.copy(buffer, room));
}

bool FakeKernel::send(std::string_view datagram) {
    lastSent = datagram;
    const bool refused = !announced && input.skip(failureToSend);
    errno = refused ? ECONNREFUSED : errno;
    return !refused;
}

}  // namespace Fuzz
