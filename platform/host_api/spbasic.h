/* spbasic.h: the basic suite, by which all other suites are looked up. */
#pragma once

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t SPErr;

typedef struct SPBasicSuite {
    /* Hands a table of functions out; every acquisition must be released. 0 or an error, and then
     * `*suite` is null. */
    SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, int32_t version);
} SPBasicSuite;

#ifdef __cplusplus
}
#endif
