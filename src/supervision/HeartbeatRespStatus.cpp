#include "HeartbeatRespStatus.hpp"

namespace Korvel {

std::string HeartbeatRespStatus::toString(Status status) {
    switch (status) {
        case NOT_RECEIVED:
            return "NOT_RECEIVED";
        case OK:
            return "OK";
        case ERROR:
            return "ERROR";
        default:
            return "";
    }
}

}  // namespace Korvel
