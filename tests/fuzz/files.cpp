// What the collectors read: the list of processes, and dumps and state files. The input is a byte that limits
// the size, and the contents.

#include <string>

#include "DumpCopy.hpp"
#include "FakeKernel.hpp"
#include "FileAccess.hpp"
#include "FuzzTarget.hpp"
#include "ProcessListing.hpp"
#include "QuietConsole.hpp"
#include "ScratchFile.hpp"

namespace {

using Fuzz::require;

void checkListing(const std::string& listing) {
    for (const auto& [name, pid] :
         Korvel::parseProcessListing(listing, {"netfp_proxy", "netfp_master", "r"})) {
        require(listing.find(name) != std::string::npos, "a process is in the list");
        const std::string magnitude = std::to_string(pid).substr(pid < 0 ? 1 : 0);
        require(pid == 0 || listing.find(magnitude) != std::string::npos, "its number is, too");
    }
}

/// Reads `content` from a file.
void checkReading(const std::string& path, std::string_view content, const Korvel::ReadingRules& rules) {
    std::string text = "earlier";
    const Korvel::FileReading reading = Korvel::readFile(path, text, rules);
    Korvel::reportReading(path, reading, rules);
    require(reading.opened && reading.error == 0, "a file is read");
    require(text == content.substr(0, rules.sizeLimit), "a text is what the file holds");
    require(reading.cut == (content.size() > rules.sizeLimit), "a cut is known");
}

void checkCopy(const Fuzz::ScratchFile& source, std::string_view content, const Korvel::ReadingRules& rules) {
    static const Fuzz::ScratchFile destination("copy");
    Korvel::DumpCopy copy(source.path(), destination.path(), rules);
    std::string text;
    require(copy.take(text) && !copy.hasSourceChanged(), "a dump is copied");
    require(copy.reportResult() == (content.size() <= rules.sizeLimit), "a cut is reported");
    std::string copied;
    require(Korvel::readFile(destination.path(), copied).isWhole() && copied == text, "the copy is the text");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Fuzz::ScratchFile file("source");
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    const auto limit = static_cast<std::size_t>(input.number(1));
    const std::string_view content = input.rest();
    const Fuzz::FakeKernel kernel(input);
    const Fuzz::QuietConsole console;
    const Korvel::ReadingRules rules{.sizeLimit = limit};
    checkListing(std::string(content));
    file.fill(content);
    checkReading(file.path(), content, rules);
    checkCopy(file, content, rules);
    return 0;
}
