#include "Figures.hpp"

#include <cstdio>

bool report(const Figure& figure) {
    const bool kept = figure.measured <= figure.limit;
    std::printf("%-62s %9.3f %-5s limit %6.2f  %s\n", figure.name.c_str(), figure.measured,
                figure.unit.c_str(), figure.limit, kept ? "kept" : "EXCEEDED");
    return kept;
}
