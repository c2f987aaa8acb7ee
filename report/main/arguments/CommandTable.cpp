#include "CommandTable.hpp"

#include <algorithm>
#include <array>

namespace Report {

namespace {

constexpr std::size_t any = 1'000'000;

constexpr std::array table{
    CommandRow{Command::check,
               "check",
               "Tell whether packages can be trusted, and why not.",
               "PACKAGE...",
               "a package",
               1,
               any,
               false,
               {addIdentity, addOutput, addLimits}},
    CommandRow{Command::show,
               "show",
               "Print packages: verdict, findings, values, logs.",
               "PACKAGE...",
               "a package",
               1,
               any,
               false,
               {addChoice, addPager, addIdentity, addRules, addOutput, addLimits}},
    CommandRow{Command::html,
               "html",
               "Make a page that shows packages in a browser.",
               "PACKAGE...",
               "a package",
               1,
               any,
               false,
               {addIdentity, addRules, addOutput, addLimits}},
    CommandRow{Command::json,
               "json",
               "Print packages as JSON.",
               "PACKAGE...",
               "a package",
               1,
               any,
               false,
               {addIdentity, addRules, addOutput, addLimits}},
    CommandRow{Command::diff,
               "diff",
               "Print what differs between two packages.",
               "EARLIER LATER",
               "two packages: EARLIER LATER",
               2,
               2,
               false,
               {addPager, addNoSidecar, addOutput, addLimits}},
    CommandRow{Command::clean,
               "clean",
               "Copy a package without its addresses and names.",
               "PACKAGE -o OUT",
               "a package",
               1,
               1,
               false,
               {addCleaning, addSidecar, addLimits}},
    CommandRow{Command::restore,
               "restore",
               "Put the addresses and names back into a package or a text.",
               "FILE",
               "a file",
               1,
               1,
               false,
               {addRestoring, addSidecar, addLimits}},
    CommandRow{Command::metrics,
               "metrics",
               "Print the newest values of each board for Prometheus.",
               "PACKAGE...",
               "a package",
               1,
               any,
               false,
               {addIdentity, addOutput, addLimits}},
    CommandRow{Command::add,
               "add",
               "Add packages to a store of many packages.",
               "STORE PACKAGE...",
               "a store and a package: STORE PACKAGE...",
               2,
               any,
               true,
               {addIdentity, addRules, addLimits}},
    CommandRow{Command::trend,
               "trend",
               "Print values over time, and which boards stand out.",
               "STORE",
               "a store",
               1,
               1,
               true,
               {addTrend, addPager, addOutput}},
    CommandRow{Command::exportTables,
               "export",
               "Write the tables of a store as CSV files.",
               "STORE DIR",
               "a store and a directory: STORE DIR",
               2,
               2,
               true,
               {}},
};

}  // namespace

std::span<const CommandRow> commandTable() {
    return table;
}

const CommandRow& rowOf(Command command) {
    return *std::ranges::find(table, command, &CommandRow::command);
}

const CommandRow* findRow(std::string_view name) {
    const auto* const row = std::ranges::find(table, name, &CommandRow::name);
    return row == table.end() ? nullptr : row;
}

std::string_view nameOf(Command command) {
    return rowOf(command).name;
}

}  // namespace Report
