#include <gtest/gtest.h>

#include "IManager.hpp"

namespace {

/// Overrides only the pure virtual functions.
class IdleManager final : public Korvel::IManager {
public:
    explicit IdleManager(bool& destroyedFlag) : IManager("Idle"), destroyed(destroyedFlag) {}
    IdleManager(const IdleManager&) = delete;
    IdleManager& operator=(const IdleManager&) = delete;
    IdleManager(IdleManager&&) = delete;
    IdleManager& operator=(IdleManager&&) = delete;
    ~IdleManager() override { destroyed = true; }

    bool detectKeywords(int /*argc*/, char** /*argv*/) override { return false; }
    void printHelpMsg(const std::string& /*indent*/, const std::string& /*programName*/) override {}

private:
    bool& destroyed;
};

class ManagerBase : public testing::Test {
protected:
    bool destroyed = false;
    std::unique_ptr<Korvel::IManager> manager = std::make_unique<IdleManager>(destroyed);
};

TEST_F(ManagerBase, FinishesSuccessfully) {
    EXPECT_TRUE(manager->resolveRequest(0, nullptr));
    EXPECT_TRUE(manager->run());
}

TEST_F(ManagerBase, ReturnsACopyOfItsName) {
    std::string copy = manager->getName();
    copy += " no more";

    EXPECT_EQ(manager->getName(), "Idle");
}

TEST_F(ManagerBase, DestroysTheWholeManager) {
    manager.reset();

    EXPECT_TRUE(destroyed);
}

}  // namespace
