#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Package.hpp"
#include "StoreError.hpp"

namespace ReportTest {

/// A value of the part mmi/sfn/HeapStats.
Report::Value valueOf(const std::string& name, Report::Number number, const std::string& text);
Report::Value valueOf(const std::string& name, std::int64_t number);

/// A whole package without parts.
Report::Package packageOf(const std::string& board, const std::string& sha256);

/// A folder for a store.
class StoreFixture : public testing::Test {
public:
    StoreFixture();
    StoreFixture(const StoreFixture&) = delete;
    StoreFixture& operator=(const StoreFixture&) = delete;
    StoreFixture(StoreFixture&&) = delete;
    StoreFixture& operator=(StoreFixture&&) = delete;
    ~StoreFixture() override;

protected:
    /// Adds packages, and commits.
    void add(const std::vector<Report::Package>& packages) const;

    /// The rows of a query, a line each, with bars between columns.
    std::string rows(const std::string& query) const;

    void execute(const std::string& statement) const;

    /// What `action` refuses; the path of the store is "STORE".
    template <typename Action>
    std::string refusalOf(Action action) const {
        try {
            action();
        } catch (const Report::StoreError& error) {
            std::string text = error.what();
            return text.replace(text.find(path), path.size(), "STORE");
        }
        return "";
    }

    std::string storePath() const { return path; }

private:
    std::filesystem::path folder;
    std::string path;
};

}  // namespace ReportTest
