#include "CommandLanguage.hpp"

#include <cstdlib>

#include "Console.hpp"

namespace Korvel {

void setCommandLanguage() {
    if (::setenv("LC_ALL", "C", 1) != 0) {
        failErrno("Error while setting the language of commands: ");
    }
}

}  // namespace Korvel
