#include "BoardSupport.hpp"

const char* boardText() {
    return "from this board";
}
