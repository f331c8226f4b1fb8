#pragma once

#include "Support/Words.h"

#include <cstdint>
#include <string>

/// Interprets the system's status codes for the login item.
namespace corvane::loginitem {

/// The values are those of SMAppServiceStatus.
enum class Status : std::uint8_t {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2, ///< registered, but the user has switched it off in System Settings
    notFound = 3,         ///< what the system reports before the first registration
};

/// The call that is needed to reach the wanted state.
enum class Change : std::uint8_t { none, registerItem, unregisterItem };

/// An unknown value counts as not registered.
[[nodiscard]] Status status(long value);

/// Only an enabled item is started at login.
[[nodiscard]] bool isEnabled(Status status);

/// Returns `none` if nothing needs to change: registering twice, or unregistering what is not registered, is
/// an error for the system.
[[nodiscard]] Change change(Status status, bool wanted);

/// Why a change failed, in words for the user: the system's own, or ours if it gives none.
[[nodiscard]] std::string reason(const std::string& systems, Words words);

} // namespace corvane::loginitem
