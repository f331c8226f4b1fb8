#pragma once

#include <stddef.h>

extern "C" {
struct _malloc_zone_t;
typedef struct _malloc_zone_t malloc_zone_t;

size_t malloc_zone_pressure_relief(malloc_zone_t* zone, size_t goal);
}
