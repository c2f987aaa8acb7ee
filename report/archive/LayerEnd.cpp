#include "LayerEnd.hpp"

namespace Report {

LayerEnd endByLimit(Limit limit) {
    return {Integrity::notRead, "the limit " + std::string(optionOf(limit)) + " was reached", limit};
}

}  // namespace Report
