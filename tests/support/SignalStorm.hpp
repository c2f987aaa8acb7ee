#pragma once

/// Sends a signal to this process every few milliseconds, from construction to destruction. The signal has a
/// handler, so it interrupts every interruptible call.
class SignalStorm {
public:
    SignalStorm();
    SignalStorm(const SignalStorm&) = delete;
    SignalStorm& operator=(const SignalStorm&) = delete;
    SignalStorm(SignalStorm&&) = delete;
    SignalStorm& operator=(SignalStorm&&) = delete;
    ~SignalStorm();

    /// The number of signals that arrived.
    static int count();
};

/// After so many signals, some of them interrupted the call under test.
inline constexpr int manySignals = 20;
