#pragma once

namespace corvane::memory {

/// Returns to the system what the process has freed, as far as whole pages allow. Takes some milliseconds:
/// for after unusually large work only.
void giveBack();

} // namespace corvane::memory
