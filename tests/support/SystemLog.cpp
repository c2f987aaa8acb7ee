#include "SystemLog.hpp"

#include <array>
#include <stdexcept>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

namespace {

constexpr sockaddr_un logAddress{.sun_family = AF_UNIX, .sun_path = "/dev/log"};
constexpr std::string_view filling = "no record";

const sockaddr* address() {
    return reinterpret_cast<const sockaddr*>(&logAddress);
}

std::string timeStamp(std::time_t moment) {
    std::array<char, 32> text{};
    std::tm calendar{};
    ::localtime_r(&moment, &calendar);
    return {text.data(), std::strftime(text.data(), text.size(), "%h %e %T", &calendar)};
}

}  // namespace

SystemLog::SystemLog() : socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)), begin(std::time(nullptr)) {
    ::unlink(logAddress.sun_path);
    if (::bind(socket, address(), sizeof logAddress) != 0) {
        throw std::runtime_error("cannot take the place of the system log");
    }
}

SystemLog::~SystemLog() {
    ::closelog();
    ::close(socket);
    ::unlink(logAddress.sun_path);
}

std::vector<std::string> SystemLog::records() {
    std::vector<std::string> all;
    std::array<char, 65536> buffer{};
    ssize_t length = 0;
    while ((length = ::recv(socket, buffer.data(), buffer.size(), MSG_DONTWAIT)) >= 0) {
        const std::string record(buffer.data(), static_cast<std::size_t>(length));
        if (record != filling) {
            all.push_back(withoutTime(record));
        }
    }
    return all;
}

void SystemLog::fill() const {
    ssize_t sent = 0;
    while (sent >= 0) {
        sent = ::sendto(socket, filling.data(), filling.size(), MSG_DONTWAIT, address(), sizeof logAddress);
    }
}

std::string SystemLog::withoutTime(std::string record) const {
    const std::size_t place = record.find('>') + 1;
    const std::time_t end = std::time(nullptr);
    for (std::time_t moment = begin; moment <= end; ++moment) {
        const std::string stamp = timeStamp(moment);
        if (record.compare(place, stamp.size(), stamp) == 0) {
            return record.replace(place, stamp.size(), "TIME");
        }
    }
    return record;
}
