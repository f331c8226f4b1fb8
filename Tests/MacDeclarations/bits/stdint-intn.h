// In place of the C library's: macOS has "long long" for 64 bits, which is another type than "long".
#ifndef _BITS_STDINT_INTN_H
#define _BITS_STDINT_INTN_H 1
typedef signed char int8_t;
typedef short int16_t;
typedef int int32_t;
typedef long long int64_t;
#endif
