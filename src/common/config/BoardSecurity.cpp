#include "BoardSecurity.hpp"

#include "Vask.h"

bool isBoardSecured() {
    int secure = 0;
    return vask_security_is_secure_env(&secure) != 0 || secure != 0;
}
