#include_next <stdio.h>

#ifndef CORVANE_DECLARATIONS_STDIO
#define CORVANE_DECLARATIONS_STDIO
#define RENAME_SWAP 0x00000002
#undef RENAME_EXCL
#define RENAME_EXCL 0x00000004
#ifdef __cplusplus
extern "C" {
#endif
int renamex_np(const char* from, const char* to, unsigned int flags);
#ifdef __cplusplus
}
#endif
#endif
