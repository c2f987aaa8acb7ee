#include "CauseTexts.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Report {
namespace {

struct CauseText {
    Cause cause;
    std::string_view text;  // {dispatcher}, {name} and {detail} stand for words
};

// In the order of the enumeration.
constexpr std::array causeTexts{
    CauseText{Cause::limitOfReader, "not read, because of the limit {detail}"},
    CauseText{Cause::packageEndsInside, "the package ends inside this part"},
    CauseText{Cause::packageEndsBefore, "the package ends before this part"},
    CauseText{Cause::packageDamaged, "the package is damaged, and may have held this part"},
    CauseText{Cause::notFollowed, "the package has a member of this name that is not followed: {detail}"},
    CauseText{Cause::noRoom, "no room was left in /tmp"},
    CauseText{Cause::notWritten, "korvel could not write this file: {detail}"},
    CauseText{Cause::folderNotCreated, "korvel could not create the directory of this file"},
    CauseText{Cause::stateFileMissing,
              "the state file was not there or empty, or dispatcher {dispatcher} did not serve it"},
    CauseText{Cause::stateFileEmpty, "the state file of dispatcher {dispatcher} was empty"},
    CauseText{Cause::bridgeFileMissing,
              "the state file was not there or empty, or the board has an SFN dispatcher after all"},
    CauseText{Cause::logMissing,
              "the log was empty, its shared memory could not be read, or the run did not ask for it"},
    CauseText{Cause::nothingLoggedOrNoRoom, "nothing was logged, or no room was left in /tmp"},
    CauseText{Cause::sourceUnreadable, "korvel could not read the source of this file: {detail}"},
    CauseText{Cause::sourceHangs,
              "dispatcher {dispatcher} hangs: its state file did not answer within five seconds"},
    CauseText{Cause::sourceLimit, "the source was larger than the 16 MiB that korvel takes of one source"},
    CauseText{Cause::collectionLimit, "the collection had reached its limit of 48 MiB"},
    CauseText{Cause::replyNotEnded, "the reply of dispatcher {dispatcher} did not end"},
    CauseText{Cause::replyStopped, "dispatcher {dispatcher} stopped in the middle of its reply"},
    CauseText{Cause::replyLate,
              "it holds the late reply to an earlier command: dispatcher {dispatcher} answers too slowly"},
    CauseText{Cause::notText, "the content is not text"},
    CauseText{Cause::noAnswer, "dispatcher {dispatcher} did not answer {name}"},
    CauseText{Cause::noAnswerOrNoRoom,
              "dispatcher {dispatcher} did not answer {name}, or no room was left in /tmp"},
    CauseText{Cause::noAnswerNotRunning, "dispatcher {dispatcher} did not answer {name}: it was not running"},
    CauseText{Cause::answeredNothing, "dispatcher {dispatcher} answered {name} with nothing"},
    CauseText{Cause::notAskable, "korvel could not ask dispatcher {dispatcher}: {detail}"},
    CauseText{Cause::dispatcherNotRunning, "dispatcher {dispatcher} was not running"},
    CauseText{Cause::notAsked, "the run did not ask for this part"},
    CauseText{Cause::notAskedOrPrinted,
              "a `print` in the same run removed this file, or the run did not ask for it"},
    CauseText{Cause::removedByPrint, "a `print` in the same run removed this file"},
    CauseText{Cause::dumpMissing,
              "{name} was not running or wrote no dump, or a `print` in the same run removed the dump"},
    CauseText{Cause::dumpNotWritten, "{name} wrote no dump within a second: it is stopped or hangs"},
    CauseText{Cause::dumpNotFinished, "{name} did not finish its dump within a second"},
    CauseText{Cause::dumpInterrupted, "{name} died while it wrote its dump"},
    CauseText{Cause::dumpBlank, "{name} wrote a dump without content"},
    CauseText{Cause::processNotRunning, "{name} was not running"},
    CauseText{Cause::processesNotListed, "korvel could not list the processes, so it asked none for a dump"},
    CauseText{Cause::notSignalled, "korvel could not ask {name} for a dump: {detail}"},
    CauseText{Cause::leftOver, "left over from an earlier run: the work directory is never emptied"},
    CauseText{Cause::leftOverNotAsked, "left over from an earlier run: this run did not ask for it"},
    CauseText{Cause::leftOverNoDump, "left over from an earlier run: {name} wrote no new dump"},
    CauseText{Cause::leftOverNotRunning, "left over from an earlier run: {name} was not running"},
    CauseText{Cause::leftOverDispatcherNotRunning,
              "left over from an earlier run: dispatcher {dispatcher} was not running"},
    CauseText{Cause::leftOverNoSource,
              "left over from an earlier run: this time, the source was not there or empty"},
    CauseText{Cause::leftOverNotWritten,
              "left over from an earlier run: korvel could not write the new file"},
    CauseText{Cause::pieceInterrupted,
              "compression was interrupted; the piece is still in runtime.log where both overlap"},
    CauseText{
        Cause::copyIncomplete,
        "the copy of the post-mortem package is incomplete: no room was left in /tmp, or the original was "
        "incomplete"},
    CauseText{Cause::linuxMissing, "fp_linux_log_collect failed, or the board does not have this command"},
    CauseText{Cause::linuxFailed, "fp_linux_log_collect failed: {detail}"},
    CauseText{Cause::damaged, "the content is damaged: {detail}"},
    CauseText{Cause::packingInterrupted,
              "packing was interrupted, no room was left below /ffs/run/logs, or the transfer ended early"},
    CauseText{
        Cause::packingFailed,
        "packing failed on the board: no room was left below /ffs/run/logs, or it could not be written"},
    CauseText{Cause::changedLater, "changed or mixed up after it was made"},
};

constexpr bool isInOrder() {
    for (std::size_t index = 0; index < causeTexts.size(); ++index) {
        if (static_cast<std::size_t>(causeTexts.at(index).cause) != index) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder() && causeTexts.size() == static_cast<std::size_t>(Cause::changedLater) + 1);

void replace(std::string& text, std::string_view mark, std::string_view word) {
    if (const std::size_t at = text.find(mark); at != std::string::npos) {
        text.replace(at, mark.size(), word);
    }
}

}  // namespace

std::string textOf(Cause cause, const PartPlace& place, std::string_view detail) {
    std::string text(causeTexts.at(static_cast<std::size_t>(cause)).text);
    replace(text, "{dispatcher}", nameOf(place.dispatcher));
    replace(text, "{name}", place.leaf);
    replace(text, "{detail}", detail);  // last: the detail may hold anything
    return text;
}

}  // namespace Report
