#include "SmLogRegistry.hpp"

#include <memory>
#include <utility>

#include <pthread.h>

namespace HostBoard {

SmLogRegistry* SmLogRegistry::instance() {
    static SmLogRegistry& registry = *new SmLogRegistry;
    static const bool forkHandlersInstalled =
        ::pthread_atfork([] { registry.beforeFork(); }, [] { registry.afterForkInParent(); },
                         [] { registry.afterForkInChild(); }) == 0;
    return forkHandlersInstalled ? &registry : nullptr;
}

SmLogClient* SmLogRegistry::client(const std::string& name) {
    const std::lock_guard guard(mutex);
    if (const auto known = clients.find(name); known != clients.end()) {
        return &known->second;
    }
    std::unique_ptr<SharedLog> log = SharedLog::open(name);
    return log ? &clients.try_emplace(name, std::move(log)).first->second : nullptr;
}

void SmLogRegistry::beforeFork() {
    mutex.lock();
    for (auto& [name, client] : clients) {
        client.sharedLog().beforeFork();
    }
}

void SmLogRegistry::afterForkInParent() {
    for (auto& [name, client] : clients) {
        client.sharedLog().afterForkInParent();
    }
    mutex.unlock();
}

void SmLogRegistry::afterForkInChild() {
    for (auto& [name, client] : clients) {
        client.sharedLog().afterForkInChild();
    }
    mutex.unlock();
}

}  // namespace HostBoard
