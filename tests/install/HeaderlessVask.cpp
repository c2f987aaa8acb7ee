// The binary interface of the board's driver-abstraction library, without the platform's headers.

extern "C" int vask_cma_process_init() {
    return 11;
}

extern "C" int vask_cma_phy_to_virt(unsigned int physical, void** virtualPointer) {
    static unsigned seen;
    seen = physical;
    *virtualPointer = &seen;
    return 12;
}

extern "C" int vask_security_is_secure_env(int* secure) {
    *secure = -1;
    return 13;
}
