#include "Support/Memory.h"

#include <malloc/malloc.h>

namespace corvane {

void memory::giveBack() {
    // All zones, as much as possible.
    static_cast<void>(malloc_zone_pressure_relief(nullptr, 0));
}

} // namespace corvane
