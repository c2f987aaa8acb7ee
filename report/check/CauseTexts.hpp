#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "PartTable.hpp"

namespace Report {

/// The causes that the judge knows, in the order of their texts.
enum class Cause : std::uint8_t {
    limitOfReader,
    packageEndsInside,
    packageEndsBefore,
    packageDamaged,
    notFollowed,
    noRoom,
    notWritten,
    folderNotCreated,
    stateFileMissing,
    stateFileEmpty,
    bridgeFileMissing,
    logMissing,
    nothingLoggedOrNoRoom,
    sourceUnreadable,
    sourceHangs,
    sourceLimit,
    collectionLimit,
    replyNotEnded,
    replyStopped,
    replyLate,
    notText,
    noAnswer,
    noAnswerOrNoRoom,
    noAnswerNotRunning,
    answeredNothing,
    notAskable,
    dispatcherNotRunning,
    notAsked,
    notAskedOrPrinted,
    removedByPrint,
    dumpMissing,
    dumpNotWritten,
    dumpNotFinished,
    dumpInterrupted,
    dumpBlank,
    processNotRunning,
    processesNotListed,
    notSignalled,
    leftOver,
    leftOverNotAsked,
    leftOverNoDump,
    leftOverNotRunning,
    leftOverDispatcherNotRunning,
    leftOverNoSource,
    leftOverNotWritten,
    pieceInterrupted,
    copyIncomplete,
    linuxMissing,
    linuxFailed,
    damaged,
    packingInterrupted,
    packingFailed,
    changedLater,
};

/// The cause of a part's state in words for people. `detail` is put where the text of this cause has one.
std::string textOf(Cause cause, const PartPlace& place, std::string_view detail = {});

}  // namespace Report
