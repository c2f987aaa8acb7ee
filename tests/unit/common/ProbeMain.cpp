#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#include <sys/un.h>
#include <unistd.h>

#include "Console.hpp"
#include "DatagramSocket.hpp"
#include "ElapsedTime.hpp"
#include "FileAccess.hpp"
#include "InputFile.hpp"
#include "Invariant.hpp"
#include "IsolatedCpus.hpp"
#include "OutputFile.hpp"
#include "Shell.hpp"
#include "SmLog.hpp"
#include "SmLogReader.hpp"
#include "SocketAddress.hpp"
#include "Timestamp.hpp"
#include "TrustedOpen.hpp"
#include "Wait.hpp"
#include "WallClock.hpp"

namespace {

using Arguments = char**;

std::string truth(bool value) {
    return value ? "true" : "false";
}

/// "open" if an owner has a descriptor, otherwise the reason.
template <typename Open>
std::string openness(Open open) {
    errno = 0;
    return open() ? "open" : std::strerror(errno);
}

std::string getIsolatedCpuMaskTwice(Arguments /*arguments*/) {
    const unsigned first = Korvel::getIsolatedCpuMask();
    return std::to_string(first) + " " + std::to_string(Korvel::getIsolatedCpuMask());
}

std::string speak(Arguments /*arguments*/) {
    Korvel::print("first line\n");
    Korvel::fail("second line");
    Korvel::print("third line\n");
    Korvel::executeCommand("echo fourth line");
    Korvel::print("fifth line\n");
    return truth(Korvel::finishStandardOutput());
}

std::string speakTwice(Arguments /*arguments*/) {
    Korvel::print("first line\n");
    Korvel::flushStandardOutput();
    errno = EINVAL;  // must not replace the reason of the earlier loss
    Korvel::print("second line\n");
    return truth(Korvel::finishStandardOutput());
}

std::string waitForInput(Arguments /*arguments*/) {
    Korvel::print("waits\n");
    errno = 0;
    const Korvel::Readiness readiness = Korvel::waitReadable(STDIN_FILENO, {});
    return readiness == Korvel::Readiness::ready ? "ready" : std::strerror(errno);
}

std::string napForAnHour(Arguments /*arguments*/) {
    Korvel::print("naps\n");
    Korvel::nap(std::chrono::hours(1));
    return {};
}

std::string waitUntilElapsed(Arguments words) {
    const std::chrono::milliseconds limit(std::stol(words[0]));
    const Korvel::ElapsedTime time;
    while (!time.exceeds(limit)) {
        std::this_thread::yield();
    }
    return "elapsed";
}

std::string breakInvariant(Arguments /*arguments*/) {
    Korvel::print("printed before\n");
    Korvel::requireInvariant(false, "nullptr != client", "ProbeMain");
    return "still there";
}

/// Sends to nobody. The test injects the result of the system call.
std::string sendDatagram(Arguments words) {
    const Base::UniqueFd socket = Korvel::openDatagramSocket(AF_UNIX);
    const sockaddr_un nobody{.sun_family = AF_UNIX, .sun_path = "/tmp/nobody"};
    return truth(Korvel::sendDatagram(socket.get(), std::as_bytes(std::span(std::string_view(words[0]))),
                                      Base::genericAddress(nobody), sizeof nobody));
}

std::string readFile(Arguments words) {
    std::string content;
    Korvel::reportReading(words[0], Korvel::readFile(words[0], content));
    return content;
}

struct Function {
    std::string_view name;
    std::string (*call)(Arguments arguments);
};

constexpr std::array functions{
    Function{"appendTrusted",
             [](Arguments words) {
                 return openness([&] {
                     return static_cast<bool>(Korvel::openTrusted(words[0], Korvel::SharedFile::refuse));
                 });
             }},
    Function{"breakInvariant", breakInvariant},
    Function{"executeCommand", [](Arguments words) { return truth(Korvel::executeCommand(words[0])); }},
    Function{"getCurrentDateTime", [](Arguments) { return Korvel::getCurrentDateTime(); }},
    Function{"getIsolatedCpuMaskTwice", getIsolatedCpuMaskTwice},
    Function{"getTimestamp", [](Arguments) { return Korvel::getTimestamp(); }},
    Function{"napForAnHour", napForAnHour},
    Function{"openDatagramSocket",
             [](Arguments) {
                 return openness([] { return static_cast<bool>(Korvel::openDatagramSocket(AF_UNIX)); });
             }},
    Function{"openInputFile",
             [](Arguments words) { return openness([&] { return Korvel::InputFile(words[0]).isOpen(); }); }},
    Function{"openTrusted",
             [](Arguments words) {
                 return openness([&] { return static_cast<bool>(Korvel::openTrusted(words[0])); });
             }},
    Function{"readSmLog",
             [](Arguments words) {
                 const auto size = static_cast<unsigned>(std::stoul(words[1]));
                 return Korvel::readSmLog(words[0], size, static_cast<AppID>(std::stoul(words[2])));
             }},
    Function{"readFile", readFile},
    Function{"sendDatagram", sendDatagram},
    Function{"speak", speak},
    Function{"speakTwice", speakTwice},
    Function{"waitForInput", waitForInput},
    Function{"waitUntilElapsed", waitUntilElapsed},
    Function{"wallClockNow",
             [](Arguments) {
                 const auto time = Korvel::wallClockNow().time_since_epoch();
                 return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(time).count());
             }},
    Function{"writeDumpFile",
             [](Arguments words) { return truth(Korvel::writeDumpFile(words[0], words[1])); }},
    Function{"writeSmLog",
             [](Arguments words) {
                 SmLog::getClientInstance(words[0], 3)->write(6, "Test", "%s", words[1]);
                 return std::string("written");
             }},
};

}  // namespace

int main(int /*argc*/, char** argv) {
    const auto* const function = std::ranges::find(functions, std::string_view(argv[1]), &Function::name);
    std::cout << function->call(argv + 2) << std::endl;
    return 0;
}
