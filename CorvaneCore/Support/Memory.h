#pragma once

namespace corvane::memory {

/// Returns freed memory to the system, as far as whole pages are free. Takes some milliseconds: call it only
/// after unusually large work.
void giveBack();

} // namespace corvane::memory
