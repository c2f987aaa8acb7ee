#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "Budget.hpp"
#include "ByteSink.hpp"

namespace Report {

/// Keeps bytes in memory until their number is known. The budget counts them until this object is destroyed.
class Collector : public ByteSink {
public:
    /// `memory` must outlive this object.
    explicit Collector(Budget& memory) : budget(memory) {}
    ~Collector() override { budget.release(bytes); }
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;
    Collector(Collector&&) = delete;
    Collector& operator=(Collector&&) = delete;

    /// Throws std::length_error if the memory limit is reached.
    void write(std::string_view more) override;

    std::size_t size() const { return bytes; }

    /// Moves everything to another sink.
    void moveTo(ByteSink& sink);

private:
    Budget& budget;
    std::deque<std::string> chunks;
    std::size_t bytes = 0;
};

}  // namespace Report
