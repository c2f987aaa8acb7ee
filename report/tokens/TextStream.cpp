#include "TextStream.hpp"

#include <algorithm>
#include <utility>

namespace Report {

namespace {

constexpr std::size_t capacity = std::size_t{64} << 10;

}  // namespace

TextStream::TextStream(TokenHandler& handler, Sink sink) : scanner(handler), out(std::move(sink)) {
    buffer.reserve(capacity);
}

void TextStream::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), capacity - buffer.size());
        buffer += bytes.substr(0, count);
        bytes.remove_prefix(count);
        if (buffer.size() == capacity) {
            scan(false);
        }
    }
}

void TextStream::finish() {
    scan(true);
    buffer.clear();
    done = 0;
}

void TextStream::scan(bool last) {
    const std::size_t end = scanner.scan(buffer, done, last);
    if (end > done) {
        out(std::string_view(buffer).substr(done, end - done));
    }
    const std::size_t passed = end - std::min(end, TokenScanner::lookBack);
    buffer.erase(0, passed);
    done = end - passed;
}

std::string handleTokens(std::string text, TokenHandler& handler) {
    TokenScanner(handler).scan(text, 0, true);
    return text;
}

}  // namespace Report
