#include "StandardStreams.hpp"

#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace Korvel {

void openMissingStandardStreams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            // Takes this number, the lowest free one. Child processes are to have it as well, so it stays
            // open over exec.
            ::open("/dev/null", O_RDWR);
        }
    }
}

}  // namespace Korvel
