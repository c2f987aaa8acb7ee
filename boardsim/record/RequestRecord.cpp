#include "RequestRecord.hpp"

#include <cstdint>
#include <utility>

#include "BoardPaths.hpp"
#include "PrintableText.hpp"

namespace Boardsim {
namespace {

constexpr std::uint64_t recordLimit = 4U << 20;

}  // namespace

RequestRecord::RequestRecord(std::string_view peer) : file(BoardPaths::receivedFile(peer), recordLimit) {
}

void RequestRecord::addDatagram(std::string_view bytes) const {
    addLine(hexText(bytes));
}

void RequestRecord::addLine(std::string line) const {
    file.addLine(std::move(line));
}

}  // namespace Boardsim
