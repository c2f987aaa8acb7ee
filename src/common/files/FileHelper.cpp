#include "FileHelper.hpp"

#include <cerrno>
#include <csignal>
#include <new>
#include <string_view>

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Console.hpp"
#include "RootFileSystem.hpp"
#include "SystemCall.hpp"
#include "Turn.hpp"

namespace Korvel {
namespace {

constexpr std::chrono::milliseconds livenessCheckInterval{250};
constexpr std::chrono::milliseconds idleWait = std::chrono::hours(1);

void closeAllDescriptors() {
#ifdef SYS_close_range
    if (::syscall(SYS_close_range, 0U, ~0U, 0U) == 0) {
        return;
    }
#endif
    const long limit = ::sysconf(_SC_OPEN_MAX);
    for (int descriptor = 0; descriptor < limit; ++descriptor) {
        ::close(descriptor);
    }
}

/// Returns true if other users can replace the file at this path.
bool isShared(std::string_view path) {
    return path.starts_with("/tmp/");
}

/// Detaches the process from everything it shares with its parent. The kernel still kills it when the parent
/// dies.
void detach(pid_t parent) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        ::_exit(0);
    }
    ::setsid();
    for (int signal = 1; signal < NSIG; ++signal) {
        std::signal(signal, SIG_DFL);
    }
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        std::signal(signal, SIG_IGN);  // if they are sent to all processes, the parent decides when to end
    }
    closeAllDescriptors();
}

}  // namespace

struct FileHelper::Shared {
    Turn turn;
    FileExchange exchange;

    /// noexcept: an exception must not let the helper continue as a second instance of the program.
    [[noreturn]] void serve() noexcept {
        FileService service;
        for (;;) {
            if (turn.await(Turn::responder, idleWait)) {
                service.handle(exchange);
                turn.passTo(Turn::requester);
            }
        }
    }
};

FileHelper::~FileHelper() {
    abandon();
}

const FileExchange& FileHelper::query(const FileRequest& request, const Deadline& deadline) {
    if (request.isIndependent()) {
        accessesDirectly = !isShared(request.path.data()) && liesOnRootFileSystem(request.path.data());
    }
    // If the idle helper was killed, try a new one. If a file was open, its helper cannot be replaced.
    const int attempts = request.isIndependent() ? 2 : 1;
    Outcome outcome = Outcome::helperDied;
    for (int attempt = 0; attempt < attempts && outcome == Outcome::helperDied && !accessesDirectly;
         ++attempt) {
        if (isRunning() || start()) {
            outcome = sendRequest(request, deadline);
        } else {
            accessesDirectly = true;
        }
    }
    if (accessesDirectly) {
        localExchange().request = request;
        localService.handle(*local);
        return *local;
    }
    if (outcome == Outcome::responded) {
        return shared->exchange;
    }
    abandon();
    localExchange().response = {.error = outcome == Outcome::timedOut ? ETIMEDOUT : EIO};
    return *local;
}

FileHelper::Outcome FileHelper::sendRequest(const FileRequest& request, const Deadline& deadline) {
    if (hasPassed(deadline)) {  // responses arrive, but too slowly
        return Outcome::timedOut;
    }
    shared->exchange.request = request;
    shared->turn.passTo(Turn::responder);
    return waitForResponse(deadline);
}

FileExchange& FileHelper::localExchange() {
    if (local == nullptr) {
        local = std::make_unique<FileExchange>();
    }
    return *local;
}

bool FileHelper::isRunning() const {
    return shared != nullptr && parentPid == ::getpid();
}

bool FileHelper::start() {
    void* const memory =
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        return false;
    }
    shared = new (memory) Shared;
    parentPid = ::getpid();
    helperPid = ::fork();
    if (helperPid == 0) {
        detach(parentPid);
        shared->serve();
    }
    if (helperPid < 0) {
        abandon();
    }
    return helperPid > 0;
}

FileHelper::Outcome FileHelper::waitForResponse(const Deadline& deadline) {
    while (!shared->turn.await(Turn::requester, livenessCheckInterval)) {
        flushStandardOutput();
        if (::waitpid(helperPid, nullptr, WNOHANG) == helperPid) {
            helperPid = -1;
            abandon();
            return Outcome::helperDied;
        }
        if (hasPassed(deadline)) {
            return Outcome::timedOut;
        }
    }
    return Outcome::responded;
}

/// Kills the helper without waiting for its end.
void FileHelper::abandon() {
    if (isRunning() && helperPid > 0) {
        ::kill(helperPid, SIGKILL);
    }
    if (shared != nullptr) {
        ::munmap(shared, sizeof(Shared));
    }
    shared = nullptr;
    helperPid = -1;
}

void FileHelper::dismiss() {
    const pid_t idle = isRunning() ? helperPid : -1;
    abandon();
    if (idle > 0) {
        Base::uninterrupted([&] { return ::waitpid(idle, nullptr, 0); });
    }
}

}  // namespace Korvel
