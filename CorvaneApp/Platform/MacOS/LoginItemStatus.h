#pragma once

#include "Support/Words.h"

#include <cstdint>
#include <string>

/// What the system's answers about the login item mean.
namespace corvane::loginitem {

/// The values are those of SMAppServiceStatus.
enum class Status : std::uint8_t {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< registered, but the user has switched it off in the system's settings
    notFound = 3,         ///< what the system says before the first registration
};

/// What has to be done for a wish to come true.
enum class Change : std::uint8_t { none, registerItem, unregisterItem };

/// A value that no system known today answers counts as not registered.
[[nodiscard]] Status status(long value);

/// Only an enabled item is started at login.
[[nodiscard]] bool isEnabled(Status status);

/// To register twice, or to take out what is not in, is an error for the system: nothing is to be done then.
[[nodiscard]] Change change(Status status, bool wanted);

/// Why a change failed, in words for the user: the system's own, or ours where it has none.
[[nodiscard]] std::string reason(const std::string& systems, Words words);

} // namespace corvane::loginitem
