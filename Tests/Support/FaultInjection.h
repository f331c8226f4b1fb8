#pragma once

#include <functional>
#include <string_view>

/// Makes chosen calls of the system fail, or ends the process there. The program's own calls are redirected
/// by the linker (see CMakeLists.txt), so that the code under test is the very code that is shipped.
namespace corvane::test::faults {

enum class Action {
    fail,        ///< The call is not made and fails.
    keepFailing, ///< So do all later calls of that function.
    writeLittle, ///< A write takes one byte only; other calls go on as usual.
    killBefore,  ///< The process ends at once before the call.
    killAfter,   ///< The process ends at once after the call.
};

struct Plan {
    int call = 0; ///< Which call is hit, counted from 1; 0 hits none.
    Action action = Action::fail;
    int error = 0; ///< errno of failing calls.
    /// Told of every call before it is made: the function's name and the descriptor, if it has one, else -1.
    /// Calls made in here are neither counted nor hit.
    std::function<void(std::string_view function, int descriptor)> observer = {};
    /// Which calls are counted, by the function's name and the path it is given, if any; all calls when
    /// empty. Others are never hit.
    std::function<bool(std::string_view function, std::string_view path)> counts = {};
};

void arm(const Plan& plan);
/// Returns how many calls were made since `arm`.
int disarm();

} // namespace corvane::test::faults
