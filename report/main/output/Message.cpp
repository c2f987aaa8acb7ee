#include "Message.hpp"

#include <iostream>

#include "SafeText.hpp"

namespace Report {

void complain(std::string_view text) {
    std::cerr << "korvel-report: " << forTerminal(text, true) << '\n';
}

}  // namespace Report
