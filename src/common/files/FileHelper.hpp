#pragma once

#include <memory>

#include <sys/types.h>

#include "FileExchange.hpp"
#include "FileService.hpp"
#include "Wait.hpp"

namespace Korvel {

/// A process of its own that looks at files. A file system can make whoever looks at it wait for ever, and
/// beyond the reach of signals: a thread would keep the program from ending, so it is a process that waits.
/// It has none of this process's descriptors, so that nobody who reads this program's output waits for it.
/// One helper answers one question at a time. One that does not answer in time is abandoned, and the next
/// question goes to a new one. It ends with this process.
class FileHelper {
public:
    FileHelper() = default;
    FileHelper(const FileHelper&) = delete;
    FileHelper& operator=(const FileHelper&) = delete;
    FileHelper(FileHelper&&) = delete;
    FileHelper& operator=(FileHelper&&) = delete;
    ~FileHelper();

    /// Asks the helper; the exchange that is returned is valid until the next question. The answer's error is
    /// ETIMEDOUT where there is none when the deadline is there. This process looks itself where no helper
    /// can be started, and at files on the root file system: without that, no program runs at all.
    const FileExchange& ask(const FileQuestion& question, const Deadline& deadline);

    /// Ends the helper, for a program that has no questions for a long time. The next question starts one.
    void dismiss();

private:
    enum class Outcome { answered, timedOut, helperDied };
    struct Shared;

    bool isRunning() const;
    bool start();
    void abandon();
    Outcome handOver(const FileQuestion& question, const Deadline& deadline);
    Outcome awaitAnswer(const Deadline& deadline);
    FileExchange& ownExchange();

    Shared* shared = nullptr;  // mapped; the helper has it too
    pid_t helper = -1;
    pid_t starter = -1;        // a fork of that process has no helper of its own
    bool looksItself = false;  // at the file that the questions are about
    FileService ownService;
    std::unique_ptr<FileExchange> own;  // for answers that are not the helper's
};

}  // namespace Korvel
