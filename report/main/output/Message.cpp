#include "Message.hpp"

#include <iostream>

#include "SafeText.hpp"

namespace Report {

void complain(std::string_view text) {
    const bool nameless = text.starts_with(": ");  // the name of a file, which is empty
    std::cerr << "korvel-report: " << (nameless ? "''" : "") << forTerminal(text, true) << '\n';
}

}  // namespace Report
