#pragma once

#include <memory>

#include <sys/types.h>

#include "FileExchange.hpp"
#include "FileService.hpp"
#include "Wait.hpp"

namespace Korvel {

/// A helper process that accesses files. A file system can block the accessing process without limit and
/// beyond the reach of signals. A blocked thread would keep the program from ending, so a separate process
/// waits. It has none of this process's descriptors, so that readers of this program's output do not wait for
/// it.
///
/// A helper handles one request at a time. If it does not respond in time, it is abandoned, and the next
/// request starts a new helper. It ends with this process.
class FileHelper {
public:
    FileHelper() = default;
    FileHelper(const FileHelper&) = delete;
    FileHelper& operator=(const FileHelper&) = delete;
    FileHelper(FileHelper&&) = delete;
    FileHelper& operator=(FileHelper&&) = delete;
    ~FileHelper();

    /// Sends a request to the helper and waits for the response. The returned exchange is valid until the
    /// next request. If there is no response before the deadline, its error is ETIMEDOUT. This process
    /// accesses the file itself if no helper can be started, or if the file is on the root file system, which
    /// every program needs anyway.
    const FileExchange& query(const FileRequest& request, const Deadline& deadline);

    /// Ends the helper, for a program that will send no requests for a long time. The next request starts a
    /// new one.
    void dismiss();

private:
    enum class Outcome { responded, timedOut, helperDied };
    struct Shared;

    bool isRunning() const;
    bool start();
    void abandon();
    Outcome sendRequest(const FileRequest& request, const Deadline& deadline);
    Outcome waitForResponse(const Deadline& deadline);
    FileExchange& localExchange();

    Shared* shared = nullptr;  // mapped; shared with the helper
    pid_t helperPid = -1;
    pid_t parentPid = -1;           // forks of that process have no helper
    bool accessesDirectly = false;  // this process accesses the current file itself
    FileService localService;
    std::unique_ptr<FileExchange> local;  // for requests without the helper
};

}  // namespace Korvel
