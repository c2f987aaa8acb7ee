#include "Terminal.hpp"

#include <utility>

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ArgumentVector.hpp"

Terminal::Terminal(const std::vector<std::string>& command) {
    child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        ArgumentVector words(command);
        ::execvp(words.argv()[1], words.argv() + 1);  // without the name before the reason
        ::_exit(1);
    }
}

void Terminal::hangUp() {
    ::close(std::exchange(terminal, -1));
}

void Terminal::type(const std::string& keys) const {
    ASSERT_EQ(::write(terminal, keys.data(), keys.size()), keys.size());
}

void Terminal::expect(const std::string& text) {
    while (shown.find(text) == std::string::npos) {
        char byte = 0;
        ASSERT_EQ(::read(terminal, &byte, 1), 1) << "instead of " << text << ": " << shown;
        shown += byte;
    }
    shown.clear();
}

std::string Terminal::rest() const {
    std::string text;
    for (char byte = 0; ::read(terminal, &byte, 1) == 1;) {
        if (byte != '\r') {
            text += byte;
        }
    }
    return text;
}

int Terminal::wait() const {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
