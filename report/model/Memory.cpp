#include "Memory.hpp"

namespace Report {

bool Memory::keepContent(std::size_t bytes) {
    const std::size_t most = budget.mostKept() / 4 * 3;
    if (kept > most || bytes > most - kept || !budget.keep(bytes)) {
        return false;
    }
    kept += bytes;
    return true;
}

bool Memory::keepName(std::size_t bytes) {
    if (!budget.keep(bytes)) {
        return false;
    }
    kept += bytes;
    return true;
}

void Memory::releaseContent(std::size_t bytes) {
    budget.release(bytes);
    kept -= bytes;
}

}  // namespace Report
