#include "PackageRows.hpp"

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>
#include <string_view>
#include <variant>

#include "Names.hpp"
#include "Utf8.hpp"

namespace Report {

namespace {

/// Binds the columns of a row, one after the other, and inserts it.
class Row {
public:
    explicit Row(SQLite::Statement& insert) : statement(insert) { statement.reset(); }

    Row& add(std::int64_t number) {
        statement.bind(++column, number);
        return *this;
    }
    Row& addFlag(bool flag) { return add(std::int64_t{flag ? 1 : 0}); }
    Row& add(double number) {
        statement.bind(++column, number);
        return *this;
    }
    Row& add(std::string_view text) {
        const std::string_view valid = validUtf8(text, buffer);
        statement.bind(++column, std::string(valid));
        return *this;
    }
    Row& add(const std::optional<Time>& time) {
        return time ? add(std::int64_t{
                          std::chrono::floor<std::chrono::seconds>(*time).time_since_epoch().count()})
                    : addNothing();
    }
    Row& addUnlessEmpty(std::string_view text) { return text.empty() ? addNothing() : add(text); }

    /// Returns the number of inserted rows.
    int insert() { return statement.exec(); }

private:
    Row& addNothing() {
        statement.bind(++column);
        return *this;
    }

    SQLite::Statement& statement;
    int column = 0;
    std::string buffer;
};

std::int64_t signedOf(std::uint64_t number) {
    return static_cast<std::int64_t>(
        std::min<std::uint64_t>(number, std::numeric_limits<std::int64_t>::max()));
}

/// SQLite has no unsigned integers of 64 bits, so a large number remains text, as one beyond 64 bits does.
void addNumber(Row& row, const Value& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value.number)) {
        row.add(*number);
    } else if (const auto* decimal = std::get_if<double>(&value.number)) {
        row.add(*decimal);
    } else if (const auto* large = std::get_if<std::uint64_t>(&value.number);
               large != nullptr && *large <= std::numeric_limits<std::int64_t>::max()) {
        row.add(signedOf(*large));
    } else {
        row.add(value.text);
    }
}

/// Packages of unknown boards are never joined, so their series are those of the checksum.
const std::string& boardOfSeries(const Package& package) {
    return package.board ? *package.board : package.sha256;
}

}  // namespace

PackageRows::PackageRows(SQLite::Database& store)
    : database(store),
      insertPackage(store,
                    "INSERT INTO package (sha256, board, time, clock_unset, kind, verdict, cause, "
                    "release, source, size) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
                    "ON CONFLICT (sha256) DO NOTHING"),
      insertPart(store, "INSERT INTO part VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
      findSeries(store, "SELECT part, title, name, occurrence, id FROM series WHERE board = ? ORDER BY id"),
      insertSeries(store, "INSERT INTO series (board, part, title, name, occurrence) VALUES (?, ?, ?, ?, ?)"),
      insertValue(store, "INSERT INTO value VALUES (?, ?, ?)"),
      insertFinding(store, "INSERT INTO finding VALUES (?, ?, ?, ?, ?, ?, ?)") {
}

bool PackageRows::add(const Package& package) {
    if (!addPackage(package)) {
        return false;
    }
    const std::int64_t identifier = database.getLastInsertRowid();
    addParts(package, identifier);
    addValues(package, identifier);
    addFindings(package, identifier);
    return true;
}

bool PackageRows::addPackage(const Package& package) {
    const std::string* const release = package.sidecar ? package.sidecar->find("korvel") : nullptr;
    return Row(insertPackage)
               .add(package.sha256)
               .addUnlessEmpty(package.board.value_or(""))
               .add(package.time)
               .addFlag(package.clockUnset)
               .addUnlessEmpty(keywordOf(package.kind))
               .add(nameOf(package.verdict))
               .addUnlessEmpty(package.cause)
               .addUnlessEmpty(release == nullptr ? "" : *release)
               .add(package.source)
               .add(signedOf(package.size))
               .insert() > 0;
}

void PackageRows::addParts(const Package& package, std::int64_t identifier) {
    std::int64_t number = 0;
    for (const Part& part : package.parts) {
        Row(insertPart)
            .add(identifier)
            .add(++number)
            .add(part.name)
            .addFlag(part.expected)
            .add(nameOf(part.state))
            .addUnlessEmpty(part.cause)
            .addUnlessEmpty(part.certainty ? nameOf(*part.certainty) : "")
            .add(signedOf(part.size))
            .add(part.time)
            .insert();
    }
}

void PackageRows::addValues(const Package& package, std::int64_t identifier) {
    if (package.values.empty()) {
        return;
    }
    std::string buffer;
    const std::string_view board = validUtf8(boardOfSeries(package), buffer);
    BoardSeries known = seriesOf(board);
    for (const Value& value : package.values) {
        Row row(insertValue);
        row.add(identifier).add(seriesFor(value, board, known));
        addNumber(row, value);
        row.insert();
    }
}

BoardSeries PackageRows::seriesOf(std::string_view board) {
    BoardSeries found;
    findSeries.reset();
    findSeries.bind(1, std::string(board));
    while (findSeries.executeStep()) {
        const std::string part = findSeries.getColumn(0).getString();
        const std::string title = findSeries.getColumn(1).getString();
        const std::string name = findSeries.getColumn(2).getString();
        found.add({part, title, name, findSeries.getColumn(3).getInt64()},
                  findSeries.getColumn(4).getInt64());
    }
    findSeries.reset();
    return found;
}

std::int64_t PackageRows::seriesFor(const Value& value, std::string_view board, BoardSeries& known) {
    std::string part;
    std::string title;
    std::string name;
    SeriesKey key{validUtf8(value.part, part), validUtf8(value.title, title), validUtf8(value.name, name),
                  signedOf(value.occurrence)};
    BoardSeries::Series* series = known.find(key);
    // Names that differ only in bytes that are not UTF-8 are equal here.
    while (series != nullptr && series->used) {
        ++key.occurrence;
        series = known.find(key);
    }
    if (series == nullptr) {
        series = &known.add(key, addSeries(board, key));
    }
    series->used = true;
    return series->identifier;
}

std::int64_t PackageRows::addSeries(std::string_view board, const SeriesKey& key) {
    Row(insertSeries).add(board).add(key.part).add(key.title).add(key.name).add(key.occurrence).insert();
    return database.getLastInsertRowid();
}

void PackageRows::addFindings(const Package& package, std::int64_t identifier) {
    std::int64_t number = 0;
    for (const Finding& finding : package.findings) {
        Row(insertFinding)
            .add(identifier)
            .add(++number)
            .add(finding.rule)
            .add(nameOf(finding.severity))
            .addUnlessEmpty(finding.part)
            .add(finding.meaning)
            .add(signedOf(finding.count))
            .insert();
    }
}

}  // namespace Report
