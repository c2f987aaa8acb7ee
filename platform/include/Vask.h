#pragma once

/* The board's driver-abstraction library "libWENVASK.so", as far as it is used here. C linkage. */

#ifdef __cplusplus
extern "C" {
#endif

/* Prepares the calling process for address translation. 0, or the library's error code. */
int vask_cma_process_init(void);

/* Writes to *virtualPointer where the calling process sees the physical address, in bytes.
   0, or an error code where the address does not translate; *virtualPointer is then untouched. */
int vask_cma_phy_to_virt(unsigned int physical, void** virtualPointer);

/* Writes to *secure whether the board runs in a secure environment (0: no). 0, or an error code where
   that cannot be told. */
int vask_security_is_secure_env(int* secure);

#ifdef __cplusplus
}
#endif
