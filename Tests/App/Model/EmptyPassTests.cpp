// What an empty pass costs: the application runs one every second, all day.

#include "App/Support/AppModelSupport.h"

#include <gtest/gtest.h>

#include <malloc.h>

namespace corvane {
namespace {

using test::AppModelTest;

TEST_F(AppModelTest, emptyPassesKeepNoMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer's allocator does not report this";
#endif
    constexpr int everyKind = 180; // passes; the board is pruned in some of them
    pass(everyKind);
    const std::size_t before = mallinfo2().uordblks;
    pass(10 * everyKind);
    EXPECT_LE(mallinfo2().uordblks, before);
}

} // namespace
} // namespace corvane
