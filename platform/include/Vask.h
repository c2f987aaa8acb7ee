#pragma once

/* The used part of the board's driver-abstraction library "libWENVASK.so". C linkage. */

#ifdef __cplusplus
extern "C" {
#endif

/* Prepares the calling process for address translation. Returns 0 or the library's error code. */
int vask_cma_process_init(void);

/* Translates a physical address, in bytes, into an address of the calling process. Returns 0, or an error
   code and leaves *virtualPointer unchanged. */
int vask_cma_phy_to_virt(unsigned int physical, void** virtualPointer);

/* Sets *secure to 0 unless the board runs in a secure environment. Returns 0, or an error code if the state
   is unknown. */
int vask_security_is_secure_env(int* secure);

#ifdef __cplusplus
}
#endif
