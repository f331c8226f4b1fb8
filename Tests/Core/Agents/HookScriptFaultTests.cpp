#include "Agents/HookScript.h"
#include "Support/FaultInjection.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string_view>

namespace {

namespace faults = corvane::test::faults;

using corvane::files::FileError;

TEST(HookScript, reportsThatItsPermissionsCouldNotBeSet) {
    const corvane::test::ScratchFolder scratch;
    const corvane::CorvanePaths paths{scratch.path()};
    faults::arm({1, faults::Action::fail, EPERM, {}, [&](std::string_view function, std::string_view path) {
                     return function == "chmod" && path == paths.hookScript().string();
                 }});
    int error = 0;
    try {
        corvane::HookScript::install(paths);
    } catch (const FileError& thrown) {
        error = thrown.code().value();
        EXPECT_EQ(thrown.operation(), FileError::Operation::write);
        EXPECT_EQ(thrown.path(), paths.hookScript());
    }
    EXPECT_EQ(faults::disarm(), 1);
    EXPECT_EQ(error, EPERM);
}

} // namespace
