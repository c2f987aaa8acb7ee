#include "PackageRows.hpp"

#include <algorithm>
#include <limits>
#include <string_view>
#include <variant>

#include "ColumnText.hpp"
#include "Names.hpp"
#include "Utf8.hpp"

namespace Report {

namespace {

std::int64_t signedOf(std::uint64_t number) {
    return static_cast<std::int64_t>(
        std::min<std::uint64_t>(number, std::numeric_limits<std::int64_t>::max()));
}

/// SQLite has no unsigned integers of 64 bits, so a large number remains text, as one beyond 64 bits does.
void addNumber(Insertion& row, const Value& value) {
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
      findPartial(store, "SELECT id FROM package WHERE sha256 = ? AND verdict = 'not fully read'"),
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
    if (package.verdict != Verdict::notFullyRead) {
        removePartial(package.sha256);
    }
    if (!addPackage(package)) {
        return false;
    }
    const std::int64_t identifier = database.getLastInsertRowid();
    addParts(package, identifier);
    addValues(package, identifier);
    addFindings(package, identifier);
    return true;
}

/// Removes the rows of a package that was not fully read. Its series remain: other packages may have them.
void PackageRows::removePartial(const std::string& sha256) {
    findPartial.reset();
    findPartial.bind(1, sha256);
    if (!findPartial.executeStep()) {
        return;
    }
    const std::string identifier = std::to_string(findPartial.getColumn(0).getInt64());
    findPartial.reset();
    for (const char* const table :
         {"part WHERE package", "value WHERE package", "finding WHERE package", "package WHERE id"}) {
        database.exec(std::string("DELETE FROM ") + table + " = " + identifier);
    }
}

bool PackageRows::addPackage(const Package& package) {
    const std::string* const release = package.sidecar ? package.sidecar->find("korvel") : nullptr;
    return insertPackage.add(package.sha256)
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
        insertPart.add(identifier)
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
    BoardSeries known;
    readSeries(board, known);
    for (const Value& value : package.values) {
        insertValue.add(identifier).add(seriesFor(value, board, known));
        addNumber(insertValue, value);
        insertValue.insert();
    }
}

void PackageRows::readSeries(std::string_view board, BoardSeries& series) {
    findSeries.reset();
    findSeries.bind(1, std::string(board));
    while (findSeries.executeStep()) {
        series.add({textOf(findSeries.getColumn(0)), textOf(findSeries.getColumn(1)),
                    textOf(findSeries.getColumn(2)), findSeries.getColumn(3).getInt64()},
                   findSeries.getColumn(4).getInt64());
    }
    findSeries.reset();
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
    insertSeries.add(board).add(key.part).add(key.title).add(key.name).add(key.occurrence).insert();
    return database.getLastInsertRowid();
}

void PackageRows::addFindings(const Package& package, std::int64_t identifier) {
    std::int64_t number = 0;
    for (const Finding& finding : package.findings) {
        insertFinding.add(identifier)
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
