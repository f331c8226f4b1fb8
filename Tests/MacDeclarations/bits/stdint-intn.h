// Replaces the C library's: macOS uses "long long" for 64 bits, a different type from "long".
#ifndef _BITS_STDINT_INTN_H
#define _BITS_STDINT_INTN_H 1
typedef signed char int8_t;
typedef short int16_t;
typedef int int32_t;
typedef long long int64_t;
#endif
