#pragma once

#include <string>

#include <sys/stat.h>
#include <sys/syscall.h>

// The system calls behind functions of the C library, as far as processors differ. Tests use the names of
// x86-64.

/// The system call of poll(). Some processors have only ppoll().
#ifdef SYS_poll
constexpr long pollCall = SYS_poll;
#else
constexpr long pollCall = SYS_ppoll;
#endif

/// The system call of recv(). Most processors have only recvfrom().
#ifdef SYS_recv
constexpr long receiveCall = SYS_recv;
#else
constexpr long receiveCall = SYS_recvfrom;
#endif

/// What the system call of lstat() answers, with its number of names and its owner, and the argument that
/// points to the answer. 32-bit ARM uses statx(), because its older calls cannot express times after 2038.
#ifdef __arm__
using StatusAnswer = struct statx;
constexpr auto namesInAnswer = &StatusAnswer::stx_nlink;
constexpr auto ownerInAnswer = &StatusAnswer::stx_uid;
constexpr const char* answerArgument = "@arg5";
#else
using StatusAnswer = struct stat;
constexpr auto namesInAnswer = &StatusAnswer::st_nlink;
constexpr auto ownerInAnswer = &StatusAnswer::st_uid;
constexpr const char* answerArgument = "@arg3";
#endif

/// Fills the answer for a file or link. Returns false if there is none.
bool askStatus(const std::string& path, StatusAnswer& answer);

/// Replaces the calls' names in a fault for strace: on 32-bit ARM, "ftruncate:error=EIO" becomes
/// "ftruncate64:error=EIO".
std::string forThisProcessor(const std::string& fault);
