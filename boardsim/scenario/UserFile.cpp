#include "UserFile.hpp"

#include <system_error>

#include "TextFile.hpp"
#include "UsageError.hpp"

namespace Boardsim {

std::string readUserFile(const std::string& path) {
    try {
        return readTextFile(path);
    } catch (const std::system_error& error) {
        throw UsageError(error.what());
    }
}

}  // namespace Boardsim
