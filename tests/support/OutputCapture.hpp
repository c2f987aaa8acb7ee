#pragma once

#include <string>

/// Captures everything that this process and its children write to standard output and standard error, from
/// construction to destruction. The texts are unchanged, byte for byte.
class OutputCapture {
public:
    OutputCapture();
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;
    OutputCapture(OutputCapture&&) = delete;
    OutputCapture& operator=(OutputCapture&&) = delete;
    ~OutputCapture();

    /// The text since the last call.
    std::string out();
    std::string err();

private:
    /// One redirected descriptor. The destructor restores the original.
    struct Stream {
        int descriptor;
        int file;
        int before;
        long consumed;
    };
    static Stream redirect(int descriptor, const char* name);
    static void restore(const Stream& stream);
    static std::string take(Stream& stream);

    Stream standardOutput;
    Stream standardError;
};
