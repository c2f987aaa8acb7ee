#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "TokenScanner.hpp"

namespace Report {

/// Shows the tokens of texts that arrive in pieces of any size to a handler, and passes the texts on. The
/// borders of the pieces do not matter.
class TextStream {
public:
    using Sink = std::function<void(std::string_view)>;

    /// `handler` must outlive the stream. `sink` receives the text as the handler left it.
    TextStream(TokenHandler& handler, Sink sink);

    void append(std::string_view bytes);
    /// Ends the text. The next byte begins another one.
    void finish();

private:
    void scan(bool last);

    TokenScanner scanner;
    Sink out;
    std::string buffer;
    std::size_t done = 0;  ///< bytes of the buffer that were passed on
};

/// Shows the tokens of a short text to a handler, and returns the text as the handler left it.
std::string handleTokens(std::string text, TokenHandler& handler);

}  // namespace Report
