#include "Collector.hpp"

#include <stdexcept>

namespace Report {

void Collector::write(std::string_view more) {
    if (!budget.keep(more.size())) {
        throw std::length_error("what is compressed inside a member needs more memory than " +
                                std::string(optionOf(Limit::memory)) + " allows");
    }
    bytes += more.size();
    chunks.emplace_back(more);
}

void Collector::moveTo(ByteSink& sink) {
    for (; !chunks.empty(); chunks.pop_front()) {
        sink.write(chunks.front());
    }
}

}  // namespace Report
