#include "StandardStreams.hpp"

#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace Korvel {

void openMissingStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            // Gets this descriptor number, because it is the lowest free one. Without close-on-exec, because
            // child processes need it too.
            ::open("/dev/null", O_RDWR);
        }
    }
}

}  // namespace Korvel
