#include "LogFixture.hpp"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include <unistd.h>

#include "LogRing.hpp"
#include "Mapping.hpp"
#include "SharedMemory.hpp"

using HostBoard::LogRing;
using HostBoard::Mapping;
using HostBoard::SharedMemory;

namespace {

std::string nameForTest() {
    std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    std::ranges::replace(name, '/', '_');  // of a test with parameters
    return name + "_" + std::to_string(::getpid());
}

}  // namespace

LogFixture::LogFixture() : name(nameForTest()), path("/dev/shm/" + name) {
}

void LogFixture::TearDown() {
    ::unlink(path.c_str());
}

SmLog& LogFixture::client() const {
    SmLog* const log = SmLog::getClientInstance(name.c_str(), 3);
    if (log == nullptr) {
        throw std::runtime_error("no client of the log " + name);
    }
    return *log;
}

LogFixture::Reading LogFixture::read(unsigned start, unsigned size) const {
    std::string buffer(size, '?');
    const unsigned end = client().read(buffer.data(), size, 0, start, 5);
    buffer.resize(::strnlen(buffer.data(), buffer.size()));
    return {.text = buffer, .end = end};
}

std::vector<std::string> LogFixture::keptTexts() const {
    return textsOf(read(0).text);
}

void LogFixture::writeNumbered(int first, int count) const {
    for (int i = first; i < first + count; ++i) {
        client().write(6, "Test", "entry %d", i);
    }
}

void LogFixture::beginAfter(std::uint64_t written) const {
    SharedMemory memory(("/" + name).c_str());
    ASSERT_TRUE(memory.reserve(0, LogRing::memorySize));
    const Mapping mapping = memory.map(0, LogRing::memorySize);
    LogRing ring(mapping.bytes());
    ASSERT_TRUE(ring.prepare());
    ring.restart(written);
}

std::vector<std::string> LogFixture::textsOf(const std::string& log) {
    constexpr std::string_view separator = ": ";
    std::vector<std::string> texts;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        texts.push_back(line.substr(line.find(separator) + separator.size()));
    }
    return texts;
}

std::vector<std::string> LogFixture::numbered(int first, int count) {
    std::vector<std::string> texts;
    for (int i = first; i < first + count; ++i) {
        texts.push_back("entry " + std::to_string(i));
    }
    return texts;
}
