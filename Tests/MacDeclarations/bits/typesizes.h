// File modes have 16 bits on macOS.
#include_next <bits/typesizes.h>
#undef __MODE_T_TYPE
#define __MODE_T_TYPE unsigned short
