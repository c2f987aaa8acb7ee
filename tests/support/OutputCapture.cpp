#include "OutputCapture.hpp"

#include <array>
#include <iostream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

OutputCapture::OutputCapture()
    : standardOutput(redirect(STDOUT_FILENO, "stdout")), standardError(redirect(STDERR_FILENO, "stderr")) {
}

OutputCapture::~OutputCapture() {
    std::cout.flush();
    restore(standardOutput);
    restore(standardError);
}

std::string OutputCapture::out() {
    return take(standardOutput);
}

std::string OutputCapture::err() {
    return take(standardError);
}

OutputCapture::Stream OutputCapture::redirect(int descriptor, const char* name) {
    std::cout.flush();
    const int file = ::memfd_create(name, MFD_CLOEXEC);
    const int before = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (file < 0 || before < 0 || ::dup2(file, descriptor) < 0) {
        throw std::runtime_error("cannot redirect the output");
    }
    return {descriptor, file, before, 0};
}

void OutputCapture::restore(const Stream& stream) {
    ::dup2(stream.before, stream.descriptor);
    ::close(stream.before);
    ::close(stream.file);
}

std::string OutputCapture::take(Stream& stream) {
    std::cout.flush();
    std::string text;
    std::array<char, 65536> piece{};
    ssize_t count = 0;
    while ((count = ::pread(stream.file, piece.data(), piece.size(), stream.consumed)) > 0) {
        text.append(piece.data(), static_cast<std::size_t>(count));
        stream.consumed += count;
    }
    return text;
}
