#pragma once

#include <string>
#include <vector>

/// A command line whose memory is measured.
struct Job {
    std::vector<std::string> command;
    unsigned seconds = 0;  ///< SIGALRM ends the job after this time; 0: it exits by itself
};

/// Runs a job, discards its output and returns its peak resident set (VmHWM) in KiB, without child processes.
/// Throws if the job fails or ends before its time.
long peakResidentKiB(const Job& job);
