#pragma once

// Only the macros that the declarations here use, such as API_AVAILABLE(macos(14.0)).
#define API_AVAILABLE(system) __attribute__((availability(system)))
#define API_DEPRECATED_IN(version, text)                                                                     \
    __attribute__((availability(macos, introduced = 10.0, deprecated = version, message = text)))
#define macos(version) macos, introduced = version
