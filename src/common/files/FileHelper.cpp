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

constexpr std::chrono::milliseconds lookInterval{250};  // of checks whether the helper is alive
constexpr std::chrono::milliseconds longTime = std::chrono::hours(1);

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
            if (turn.await(Turn::answering, longTime)) {
                service.answer(exchange);
                turn.passTo(Turn::asking);
            }
        }
    }
};

FileHelper::~FileHelper() {
    abandon();
}

const FileExchange& FileHelper::ask(const FileQuestion& question, const Deadline& deadline) {
    if (question.isFirst()) {
        looksItself = !isShared(question.path.data()) && liesOnRootFileSystem(question.path.data());
    }
    // If the idle helper was killed, try a new one. If a file was open, its helper cannot be replaced.
    const int attempts = question.isFirst() ? 2 : 1;
    Outcome outcome = Outcome::helperDied;
    for (int attempt = 0; attempt < attempts && outcome == Outcome::helperDied && !looksItself; ++attempt) {
        if (isRunning() || start()) {
            outcome = handOver(question, deadline);
        } else {
            looksItself = true;
        }
    }
    if (looksItself) {
        ownExchange().question = question;
        ownService.answer(*own);
        return *own;
    }
    if (outcome == Outcome::answered) {
        return shared->exchange;
    }
    abandon();
    ownExchange().answer = {.error = outcome == Outcome::timedOut ? ETIMEDOUT : EIO};
    return *own;
}

FileHelper::Outcome FileHelper::handOver(const FileQuestion& question, const Deadline& deadline) {
    if (hasPassed(deadline)) {  // each piece arrived in time, but not all of them
        return Outcome::timedOut;
    }
    shared->exchange.question = question;
    shared->turn.passTo(Turn::answering);
    return awaitAnswer(deadline);
}

FileExchange& FileHelper::ownExchange() {
    if (own == nullptr) {
        own = std::make_unique<FileExchange>();
    }
    return *own;
}

bool FileHelper::isRunning() const {
    return shared != nullptr && starter == ::getpid();
}

bool FileHelper::start() {
    void* const memory =
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        return false;
    }
    shared = new (memory) Shared;
    starter = ::getpid();
    helper = ::fork();
    if (helper == 0) {
        detach(starter);
        shared->serve();
    }
    if (helper < 0) {
        abandon();
    }
    return helper > 0;
}

FileHelper::Outcome FileHelper::awaitAnswer(const Deadline& deadline) {
    while (!shared->turn.await(Turn::asking, lookInterval)) {
        flushStandardOutput();
        if (::waitpid(helper, nullptr, WNOHANG) == helper) {
            helper = -1;
            abandon();
            return Outcome::helperDied;
        }
        if (hasPassed(deadline)) {
            return Outcome::timedOut;
        }
    }
    return Outcome::answered;
}

/// Kills the helper without waiting for its end.
void FileHelper::abandon() {
    if (isRunning() && helper > 0) {
        ::kill(helper, SIGKILL);
    }
    if (shared != nullptr) {
        ::munmap(shared, sizeof(Shared));
    }
    shared = nullptr;
    helper = -1;
}

void FileHelper::dismiss() {
    const pid_t idle = isRunning() ? helper : -1;
    abandon();
    if (idle > 0) {
        Base::uninterrupted([&] { return ::waitpid(idle, nullptr, 0); });
    }
}

}  // namespace Korvel
