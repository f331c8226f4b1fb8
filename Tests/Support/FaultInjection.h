#pragma once

#include <functional>
#include <string_view>

/// Makes selected system calls fail, or ends the process there. The linker redirects the program's own calls
/// (see CMakeLists.txt), so that the code under test is exactly the code that is shipped.
namespace corvane::test::faults {

enum class Action {
    fail,        ///< The call fails without being made.
    keepFailing, ///< So do all later calls of that function.
    failEach,    ///< Every call that counts fails, whichever its number.
    writeLittle, ///< A write takes only one byte; other calls are unaffected.
    killBefore,  ///< The process ends at once before the call.
    killAfter,   ///< The process ends at once after the call.
};

struct Plan {
    int call = 0; ///< The number of the affected call, counted from 1; 0 for none.
    Action action = Action::fail;
    int error = 0; ///< errno of failing calls.
    /// Called before every call: the function's name and the descriptor, if it has one, else -1. Calls made
    /// by the observer are neither counted nor affected.
    std::function<void(std::string_view function, int descriptor)> observer = {};
    /// Selects the calls that are counted, by the function's name and its path argument, if any; all calls
    /// when empty. Others are never affected.
    std::function<bool(std::string_view function, std::string_view path)> counts = {};
};

void arm(const Plan& plan);
/// Returns how many calls were made since `arm`.
int disarm();

} // namespace corvane::test::faults
