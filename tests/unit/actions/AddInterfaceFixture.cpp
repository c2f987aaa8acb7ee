#include "AddInterfaceFixture.hpp"

#include <unistd.h>

#include "ArgumentVector.hpp"
#include "LogEntries.hpp"
#include "NetlinkWire.hpp"
#include "WireNumber.hpp"

bool AddInterfaceFixture::run(const std::vector<std::string>& names) {
    std::vector<std::string> words{"add_interface"};
    words.insert(words.end(), names.begin(), names.end());
    ArgumentVector vector(words);
    return action.run(vector.argc(), vector.argv());
}

bool AddInterfaceFixture::add(const std::vector<std::string>& names) {
    bool success = false;
    printed = printedBy([&] { success = run(names); });
    return success;
}

Printed AddInterfaceFixture::successOf(const std::string& name) {
    return {.out = "AddInterface " + name + " successful\n"};
}

Printed AddInterfaceFixture::failureOf(const std::string& name, const std::string& reason) {
    return {.out = reason + "AddInterface " + name + " failed. Check logs for more info.\n"};
}

std::string AddInterfaceFixture::requestFor(const std::string& name) {
    constexpr std::uint32_t addInterfaceRequest = 23;
    constexpr std::size_t fieldSize = 32;
    std::string field = name;
    field.resize(fieldSize, '\0');
    return netlinkMessage(0, static_cast<std::uint32_t>(::getpid()),
                          littleEndian(addInterfaceRequest) + field);
}

std::string AddInterfaceFixture::responsePayload(std::uint32_t status) {
    constexpr std::uint32_t addInterfaceResponse = 24;
    return statusPayload(addInterfaceResponse, status);
}

AddInterfaceFixture::Reports AddInterfaceFixture::reports() {
    return logEntries(logName);
}
