#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "PieceSource.hpp"

namespace Report {

/// A stream whose first bytes can be seen before they are read.
class Lookahead : public PieceSource {
public:
    /// `source` must outlive this object.
    explicit Lookahead(PieceSource& stream) : source(stream) {}

    /// The first bytes: at least `count`, or all bytes of a shorter stream. Only before next().
    std::string_view peek(std::size_t count);

    std::string_view next() override;

private:
    PieceSource& source;
    std::string_view first;  ///< what next() returns first
    std::string gathered;    ///< holds `first` if several pieces were needed
};

}  // namespace Report
