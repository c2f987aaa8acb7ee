#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Package.hpp"

namespace Report {

/// How the text of a member is read.
enum class TextForm : std::uint8_t {
    log,
    archivedLog,  ///< a log in which overlap warnings stand
    table,        ///< values under titles
    plain,        ///< text of Linux: neither values nor log entries
    plainOrLog,   ///< its first lines decide
    tableOrLog,   ///< its first lines decide
};

/// A member's name without components that mean nothing: "./fuse//HistoryLog.log" is
/// "fuse/HistoryLog.log". Empty for the work directory itself.
std::string normalName(std::string_view member);

/// The name of a part by its normal name: without ".log", ".log.gz" or ".tgz".
std::string_view partName(std::string_view normal);

/// The form of a text by its member's normal name.
TextForm formOf(std::string_view normal);

/// What is odd about the name of a member: it is absolute or has "..". Empty if nothing is.
std::string_view oddName(std::string_view member);

/// The last component of a path.
std::string_view baseName(std::string_view path);

/// The name of a package's file without its folders, ".previous" and ending: "netfp_logs_sup".
std::string_view stemOf(std::string_view path);

/// The kind of a package by the stem of its file's name.
Kind kindOfFile(std::string_view stem);

}  // namespace Report
