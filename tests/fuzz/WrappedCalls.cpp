// The calls of korvel that the linker leads here (--wrap): those that reach other processes, the network or
// the system log, those that delete, and those that take time.
//
// The names are what the linker wants, "__wrap_" and the name of the function, which programs may not use in
// C++.

#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <string>

#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "FakeKernel.hpp"

using Fuzz::FakeKernel;
using std::chrono::nanoseconds;
using std::chrono::steady_clock;

extern "C" {

int fakePoll(pollfd* descriptors, nfds_t count, int timeout) __asm__("__wrap_poll");
int fakePollChecked(pollfd* descriptors, nfds_t count, int timeout, std::size_t) __asm__("__wrap___poll_chk");
int fakeNanosleep(const timespec* time, timespec* left) __asm__("__wrap_nanosleep");

int fakeSocket(int, int, int) __asm__("__wrap_socket");
int fakeSetsockopt(int, int, int, const void*, socklen_t) __asm__("__wrap_setsockopt");
int fakeBind(int, const sockaddr*, socklen_t) __asm__("__wrap_bind");
int fakeConnect(int, const sockaddr*, socklen_t) __asm__("__wrap_connect");
ssize_t fakeSendto(int, const void* data, std::size_t size, int, const sockaddr*,
                   socklen_t) __asm__("__wrap_sendto");
ssize_t fakeRecv(int, void* buffer, std::size_t size, int) __asm__("__wrap_recv");
ssize_t fakeRecvChecked(int, void* buffer, std::size_t size, std::size_t, int) __asm__("__wrap___recv_chk");

void fakeVsyslog(int, const char* format, std::va_list arguments) __asm__("__wrap_vsyslog")
    __attribute__((format(printf, 2, 0)));
void fakeVsyslogChecked(int, int, const char* format, std::va_list arguments) __asm__("__wrap___vsyslog_chk")
    __attribute__((format(printf, 3, 0)));

pid_t fakeFork() __asm__("__wrap_fork");
int fakeSpawn(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*, char* const*,
              char* const*) __asm__("__wrap_posix_spawn");
std::FILE* fakePopen(const char*, const char*) __asm__("__wrap_popen");
int fakeUnlink(const char*) __asm__("__wrap_unlink");
int fakeRand() __asm__("__wrap_rand");

int fakePoll(pollfd* descriptors, nfds_t count, int timeout) {
    const bool ready = FakeKernel::current().waitForDatagram(std::chrono::milliseconds(timeout));
    for (nfds_t index = 0; index < count; ++index) {
        descriptors[index].revents = static_cast<short>(ready ? descriptors[index].events : 0);
    }
    return ready ? static_cast<int>(count) : 0;
}

int fakePollChecked(pollfd* descriptors, nfds_t count, int timeout, std::size_t /*room*/) {
    return fakePoll(descriptors, count, timeout);
}

int fakeNanosleep(const timespec* time, timespec* /*left*/) {
    FakeKernel::current().pass(std::chrono::seconds(time->tv_sec) + nanoseconds(time->tv_nsec));
    return 0;
}

/// Any descriptor will do: no call reaches it, except for close().
int fakeSocket(int /*family*/, int /*type*/, int /*protocol*/) {
    return ::eventfd(0, EFD_CLOEXEC);
}

int fakeSetsockopt(int /*socket*/, int /*level*/, int /*name*/, const void* /*value*/, socklen_t /*size*/) {
    return 0;
}

int fakeBind(int /*socket*/, const sockaddr* /*address*/, socklen_t /*size*/) {
    return 0;
}

/// Only the system log is connected to.
int fakeConnect(int /*socket*/, const sockaddr* /*address*/, socklen_t /*size*/) {
    errno = ENOENT;
    return -1;
}

ssize_t fakeSendto(int /*socket*/, const void* data, std::size_t size, int /*flags*/,
                   const sockaddr* /*address*/, socklen_t /*addressSize*/) {
    const bool sent = FakeKernel::current().send({static_cast<const char*>(data), size});
    return sent ? static_cast<ssize_t>(size) : -1;
}

ssize_t fakeRecv(int /*socket*/, void* buffer, std::size_t size, int /*flags*/) {
    return FakeKernel::current().receive(static_cast<char*>(buffer), size);
}

ssize_t fakeRecvChecked(int socket, void* buffer, std::size_t size, std::size_t /*room*/, int flags) {
    return fakeRecv(socket, buffer, size, flags);
}

/// Formats the text, because that reads all arguments.
void fakeVsyslog(int /*priority*/, const char* format, std::va_list arguments) {
    std::vsnprintf(nullptr, 0, format, arguments);
}

void fakeVsyslogChecked(int priority, int /*flag*/, const char* format, std::va_list arguments) {
    fakeVsyslog(priority, format, arguments);
}

/// Without a file helper, korvel accesses files itself.
pid_t fakeFork() {
    errno = EAGAIN;
    return -1;
}

int fakeSpawn(pid_t* /*child*/, const char* /*path*/, const posix_spawn_file_actions_t* /*actions*/,
              const posix_spawnattr_t* /*attributes*/, char* const* /*argv*/, char* const* /*environment*/) {
    return EAGAIN;
}

std::FILE* fakePopen(const char* /*command*/, const char* /*mode*/) {
    errno = EAGAIN;
    return nullptr;
}

int fakeUnlink(const char* /*path*/) {
    errno = ENOENT;
    return -1;
}

/// The first request identifier, so that inputs can answer.
int fakeRand() {
    constexpr int number = 0x30303030;
    return number;
}

}  // extern "C"

steady_clock::time_point fakeNow() __asm__("__wrap__ZNSt6chrono3_V212steady_clock3nowEv");

steady_clock::time_point fakeNow() {
    return steady_clock::time_point(FakeKernel::current().now());
}
