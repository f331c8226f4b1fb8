#include "Platform/Activation.h"

namespace corvane {

// Here windows are active, each for itself.
void activateApplication() {}

} // namespace corvane
