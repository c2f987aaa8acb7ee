#pragma once

#include <string>
#include <vector>

/// A command line whose memory is measured.
struct Job {
    std::vector<std::string> command;
    unsigned seconds = 0;  ///< SIGALRM ends the job after this time; 0: it ends by itself
};

/// Runs a job with its output thrown away and returns its greatest resident set (VmHWM) in KiB, without that
/// of its child processes. Throws if the job fails, or ends before its time.
long peakResidentKiB(const Job& job);
