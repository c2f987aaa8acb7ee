#include "CleanRefusal.hpp"

#include <system_error>

#include "Assignment.hpp"

namespace Report {

void throwAsRefusal() {
    try {
        throw;
    } catch (const NoReplacement& error) {
        throw CleanRefusal(CleanRefusal::notClean, error.what());
    } catch (const std::length_error& error) {  // a limit was reached
        throw CleanRefusal(CleanRefusal::notClean, error.what());
    } catch (const std::system_error& error) {
        throw CleanRefusal(CleanRefusal::unusable, error.what());
    }
}

}  // namespace Report
