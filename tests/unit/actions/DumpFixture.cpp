#include "DumpFixture.hpp"

#include <cstring>
#include <sstream>
#include <stdexcept>

#include "ArgumentVector.hpp"
#include "HostBoard.hpp"
#include "TestFiles.hpp"
#include "Vask.h"

namespace {

void* translated(std::uint32_t physical) {
    void* address = nullptr;
    if (::vask_cma_phy_to_virt(physical, &address) != 0) {
        throw std::runtime_error("no physical memory");
    }
    return address;
}

}  // namespace

void DumpFixture::put(std::uint32_t physical, std::string_view bytes) {
    std::memcpy(translated(physical), bytes.data(), bytes.size());
}

std::string DumpFixture::virtualAddress(std::uint32_t physical) {
    std::ostringstream text;
    text << translated(physical);
    return text.str();
}

void DumpFixture::breakTranslation(int code) {
    writeFile(HostBoard::cmaErrorFile, std::to_string(code));
}

bool DumpFixture::run(Korvel::SimpleAction& action, const std::vector<std::string>& words) {
    ArgumentVector vector(words);
    bool success = false;
    printed = printedBy([&] { success = action.run(vector.argc(), vector.argv()); });
    return success;
}
