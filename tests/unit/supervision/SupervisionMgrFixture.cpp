#include "SupervisionMgrFixture.hpp"

#include "LogEntries.hpp"

SupervisionMgrFixture::Record SupervisionMgrFixture::error(const std::string& text) {
    return {"0 Supervision: " + text, "<11>TIME supervision_test: " + text};
}

SupervisionMgrFixture::Record SupervisionMgrFixture::information(const std::string& text) {
    return {"2 Supervision: " + text, "<14>TIME supervision_test: " + text};
}

void SupervisionMgrFixture::select(
    std::initializer_list<Korvel::Configuration::DispatcherInstance> instances) {
    for (const auto instance : instances) {
        Korvel::Configuration::setDispatcherInstance(instance);
    }
}

bool SupervisionMgrFixture::run() {
    bool success = true;
    printed = printedBy([&] { success = manager.run(); });
    return success;
}

void SupervisionMgrFixture::expectLogged(const std::vector<Record>& records) {
    std::vector<std::string> inSharedMemory;
    std::vector<std::string> inSystemLog;
    for (const Record& record : records) {
        inSharedMemory.push_back(record.inSharedMemory);
        inSystemLog.push_back(record.inSystemLog);
    }
    EXPECT_EQ(sharedMemoryLog(), inSharedMemory);
    EXPECT_EQ(systemLog.records(), inSystemLog);
}

std::vector<std::string> SupervisionMgrFixture::sharedMemoryLog() {
    return logEntries("dispatcher_log_memory");
}
