#include "DumpCopy.hpp"

#include <cerrno>
#include <cstring>
#include <utility>

#include "Console.hpp"
#include "OutputFile.hpp"

namespace Korvel {

DumpCopy::DumpCopy(std::string sourcePath, std::string destinationPath, const ReadingRules& readingRules,
                   Directory directoryState)
    : source(std::move(sourcePath)),
      destination(std::move(destinationPath)),
      rules(readingRules),
      directory(directoryState),
      before(stateOf(source)),
      responds(before || errno != ETIMEDOUT) {
}

bool DumpCopy::hasSourceChanged() {
    const std::optional<FileState> now = stateOf(source);
    responds = now || errno != ETIMEDOUT;
    return now && !(now == before);
}

bool DumpCopy::take(std::string& text) {
    const FileReading latest = readFile(source, text, rules);
    if (!latest.opened && latest.error == ENOENT) {
        return false;  // keep the result of an earlier attempt for the report
    }
    reading = latest;
    responds = latest.error != ETIMEDOUT;
    if (!latest.opened) {
        return false;
    }
    taken = true;
    writeError = write(text, latest.state);
    if (writeError == ENOENT && directory == Directory::mayBeMissing) {
        text.clear();
        writeError = 0;
        return false;
    }
    return writeError == 0 && latest.error == 0;
}

int DumpCopy::write(const std::string& text, const FileState& state) const {
    OutputFile copy(destination);
    if (!copy.isOpen()) {
        return errno;
    }
    copy.write(text);
    if (state == before) {
        copy.setTimes(state);
    }
    static_cast<void>(copy.close());
    return copy.writeError();
}

bool DumpCopy::reportResult() const {
    if (writeError != 0) {
        return fail("Error while writing ", destination, ": ", std::strerror(writeError));
    }
    if (reading.error != 0) {
        return fail("Error while reading ", source, ": ", std::strerror(reading.error));
    }
    if (reading.cut) {
        return fail(source, " is larger than ", rules.sizeLimit, " bytes, cut");
    }
    return responds;
}

}  // namespace Korvel
