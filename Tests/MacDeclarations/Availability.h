#pragma once

// Only the macros that the declarations here use, such as API_AVAILABLE(macos(14.0)).
#define API_AVAILABLE(system) __attribute__((availability(system)))
#define macos(version) macos, introduced = version
