#include "ArchiveFixture.hpp"

#include <cstdlib>
#include <filesystem>

using namespace Korvel;

ArchiveFixture::ArchiveFixture() {
    ::setenv("LC_ALL", "C", 1);  // for the messages of other programs
    std::filesystem::remove_all("/tmp/korvel");
}

Printed ArchiveFixture::follow() {
    constexpr AppID application = 3;
    SmLog* const client = SmLog::getClientInstance("dispatcher_log_memory", application);
    return printedBy([&] { follower.emplace(manager, "dispatcher", client); });
}

Printed ArchiveFixture::update(unsigned size) {
    std::string buffer(size, '?');
    return printedBy([&] { follower->updateLog(buffer.data(), size); });
}

Printed ArchiveFixture::archive(unsigned bytes) {
    const auto whole = static_cast<unsigned>(bytes / RecordedLog::largest);
    log.write(whole / 2);
    const Printed first = update();
    log.write(whole - whole / 2);
    if (bytes % RecordedLog::largest != 0) {
        log.write(1, bytes % RecordedLog::largest);
    }
    const Printed second = update();
    return {first.out + second.out, first.err + second.err};
}
