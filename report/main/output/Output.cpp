#include "Output.hpp"

#include <iostream>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "Message.hpp"
#include "Terminal.hpp"

namespace Report {

void Output::write(const Print& print) {
    guarded([&] {
        const bool first = buffer == nullptr;
        if (first) {
            open();
        }
        std::ostream out(buffer.get());
        out.exceptions(std::ios::badbit);
        out << (first ? "" : "\n");
        print(out, style);
    });
}

void Output::finish() {
    guarded([&] {
        if (buffer != nullptr) {
            buffer->pubsync();
        }
        if (file != nullptr) {
            file->keep();
        }
        pager.reset();
    });
}

/// Runs a step that writes. The end of the pager ends the output, and is no error.
void Output::guarded(const std::function<void()>& step) {
    if (readerGone) {
        return;
    }
    try {
        step();
    } catch (const std::system_error& error) {
        readerGone = pager != nullptr && error.code() == std::errc::broken_pipe;
        if (!readerGone) {
            throw OutputError(destination.file.value_or("standard output") + ": " + error.code().message());
        }
    }
}

void Output::open() {
    if (destination.file && *destination.file != "-") {
        file = std::make_unique<AsideFile>(*destination.file);
        buffer = std::make_unique<DescriptorStream>(file->descriptor());
    } else {
        openStandardOutput();
    }
}

void Output::openStandardOutput() {
    style = styleFor(STDOUT_FILENO);
    const std::string command =
        destination.pager && isTerminal(STDOUT_FILENO) ? pagerCommand() : std::string();
    if (!command.empty()) {
        try {
            pager = std::make_unique<Pager>(command);
        } catch (const std::system_error& error) {
            if (command != usualPager) {
                complain(command + ": " + error.code().message());
            }
        }
    }
    buffer = std::make_unique<DescriptorStream>(pager == nullptr ? STDOUT_FILENO : pager->descriptor());
}

}  // namespace Report
