#pragma once

/// Has processes write to the log `logName` at once, each its numbered entries of some 1000 bytes, and waits
/// for their end. False where one of them failed.
bool writeFromProcesses(int processes, int entriesOfEach, const char* logName);
