#pragma once

#include <chrono>
#include <string>

#include "FuzzInput.hpp"

namespace Fuzz {

/// What the kernel answers to korvel during one input. The linker leads korvel's calls here
/// (WrappedCalls.cpp), so a target needs no peer, changes nothing on the machine, and waits without taking
/// time.
///
/// Each datagram of the input is a byte that says after how many units of 20 ms it arrives, two bytes with
/// its length, and its contents. Instead of a datagram, the byte 0xff makes receiving fail, and 0xfe the next
/// sending.
class FakeKernel {
public:
    /// `source` must outlive this object. Only one object may exist.
    explicit FakeKernel(FuzzInput& source);
    FakeKernel(const FakeKernel&) = delete;
    FakeKernel& operator=(const FakeKernel&) = delete;
    FakeKernel(FakeKernel&&) = delete;
    FakeKernel& operator=(FakeKernel&&) = delete;
    ~FakeKernel();

    /// The object that exists.
    static FakeKernel& current();

    /// Lets time pass until the next datagram arrives, at most `limit`. Returns whether one arrived.
    bool waitForDatagram(std::chrono::milliseconds limit);

    /// The next datagram, cut to `room` bytes, or -1 with errno.
    int receive(char* buffer, std::size_t room);

    /// Returns false, with errno, if sending fails.
    bool send(std::string_view datagram);

    void pass(std::chrono::nanoseconds time) { elapsed += time; }

    std::chrono::nanoseconds now() const { return elapsed; }
    const std::string& sent() const { return lastSent; }
    /// The last datagram that korvel received, before it was cut.
    const std::string& received() const { return lastReceived; }

private:
    FuzzInput& input;
    bool announced = false;  // the byte that says when the next datagram arrives was read
    bool fails = false;
    std::chrono::nanoseconds arrival{};
    std::chrono::nanoseconds elapsed{};
    std::string lastSent;
    std::string lastReceived;
};

}  // namespace Fuzz
