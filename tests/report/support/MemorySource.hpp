#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include "ByteSource.hpp"

namespace ReportTest {

/// A package in memory.
class MemorySource : public Report::ByteSource {
public:
    explicit MemorySource(std::string content) : bytes(std::move(content)) {}

    std::size_t read(std::span<char> buffer) override {
        const std::size_t count = bytes.copy(buffer.data(), buffer.size(), offset);
        offset += count;
        return count;
    }

private:
    std::string bytes;
    std::size_t offset = 0;
};

}  // namespace ReportTest
