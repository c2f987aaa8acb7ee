#pragma once

/// Starts processes that write to the log `logName` at the same time. Each writes its numbered entries of
/// about 1000 bytes. Waits for their end. False if one of them failed.
bool writeFromProcesses(int processes, int entriesOfEach, const char* logName);
