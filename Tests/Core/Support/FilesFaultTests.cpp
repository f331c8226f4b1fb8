#include "ErrorCode.h"
#include "Support/FaultInjection.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {
namespace {

namespace faults = test::faults;
using test::errorCode;

/// What `files::read` returns while the file grows during each of the first `times` attempts; none if it
/// throws EBUSY.
std::optional<std::string> readWhileGrowing(int times) {
    const test::ScratchFolder scratch;
    test::writeFile(scratch / "file", "");
    int changes = 0;
    bool isGrown = false;
    faults::arm({0, faults::Action::fail, 0, [&](std::string_view function, int /*descriptor*/) {
                     if (function == "open") isGrown = false;
                     if (function != "read" || isGrown || changes == times) return;
                     isGrown = true;
                     ++changes;
                     test::writeFile(scratch / "file", std::string(static_cast<std::size_t>(changes), 'x'));
                 }});
    std::optional<std::string> bytes;
    const int error = errorCode([&] { bytes = files::read(scratch / "file").bytes; });
    faults::disarm();
    EXPECT_EQ(error, bytes ? 0 : EBUSY);
    EXPECT_EQ(changes, times);
    return bytes;
}

TEST(FilesFaults, aFileThatChangesWhileItIsReadIsReadAgainThreeTimes) {
    EXPECT_EQ(readWhileGrowing(0), "");
    EXPECT_EQ(readWhileGrowing(1), "x");
    EXPECT_EQ(readWhileGrowing(3), "xxx");
    EXPECT_EQ(readWhileGrowing(4), std::nullopt);
}

TEST(FilesFaults, aFolderThatCannotBeCreatedInANewOneFailsForItsOwnReason) {
    const test::ScratchFolder scratch;
    // The first call finds the parent missing, the second creates it.
    faults::arm({3, faults::Action::fail, ENOSPC, {}, [](std::string_view function, std::string_view) {
                     return function == "mkdir";
                 }});
    EXPECT_EQ(errorCode([&] { files::createDirectories(scratch / "new/folder"); }), ENOSPC);
    EXPECT_EQ(faults::disarm(), 3);
    EXPECT_TRUE(std::filesystem::is_directory(scratch / "new"));
    EXPECT_FALSE(std::filesystem::exists(scratch / "new/folder"));
}

} // namespace
} // namespace corvane
