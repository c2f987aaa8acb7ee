#include "ProcessListing.hpp"

#include <algorithm>

#include "ByteClass.hpp"
#include "LineFields.hpp"

namespace Report {

namespace {

std::string_view fieldAt(std::string_view line, std::size_t column) {
    for (std::size_t index = 0; index < column; ++index) {
        static_cast<void>(takeField(line));
    }
    return takeField(line);
}

bool isNumber(std::string_view field) {
    return !field.empty() && std::ranges::all_of(field, [](char byte) { return isOf(byte, digitByte); });
}

}  // namespace

std::optional<std::string_view> ProcessListing::userIn(std::string_view line) {
    if (const std::optional<Columns> begun = columnsOf(line)) {
        columns = begun;
        return std::nullopt;
    }
    if (!columns) {
        return std::nullopt;
    }
    if (!isNumber(fieldAt(line, columns->process))) {
        columns.reset();
        return std::nullopt;
    }
    return fieldAt(line, columns->user);
}

std::optional<ProcessListing::Columns> ProcessListing::columnsOf(std::string_view heading) {
    if (heading.find("PID") == std::string_view::npos) {
        return std::nullopt;
    }
    std::optional<std::size_t> user;
    std::optional<std::size_t> process;
    std::size_t column = 0;
    for (std::string_view field = takeField(heading); !field.empty(); field = takeField(heading)) {
        if (isNumber(field)) {
            return std::nullopt;
        }
        if (field == "USER" || field == "UID") {
            user = column;
        } else if (field == "PID") {
            process = column;
        }
        ++column;
    }
    return user && process ? std::optional<Columns>({*user, *process}) : std::nullopt;
}

}  // namespace Report
