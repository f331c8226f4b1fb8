#include "Support/Memory.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace corvane {

void memory::giveBack() {
#ifdef __GLIBC__
    static_cast<void>(malloc_trim(0));
#endif
}

} // namespace corvane
