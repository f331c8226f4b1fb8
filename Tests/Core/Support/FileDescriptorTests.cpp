#include "Support/FileDescriptor.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace corvane {
namespace {

using files::FileDescriptor;
using files::readToEnd;

bool isOpen(int number) {
    return fcntl(number, F_GETFD) != -1;
}

FileDescriptor opened(const std::filesystem::path& path) {
    return FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

TEST(FileDescriptor, isClosedAtTheEndAndLeavesErrnoAlone) {
    int number = -1;
    {
        const FileDescriptor descriptor = opened("/dev/null");
        ASSERT_TRUE(descriptor.isOpen());
        number = descriptor.number();
        EXPECT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
    {
        const FileDescriptor closedAlready = opened("/dev/null");
        ASSERT_EQ(close(closedAlready.number()), 0);
        errno = ENOSPC;
    }
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_FALSE(FileDescriptor().isOpen());
}

TEST(FileDescriptor, isClosedOnceWhereItWasMovedTo) {
    FileDescriptor first = opened("/dev/null");
    const int number = first.number();
    {
        FileDescriptor second(std::move(first));
        EXPECT_EQ(second.number(), number);
        FileDescriptor third;
        third = std::move(second);
        EXPECT_EQ(third.number(), number);
        EXPECT_TRUE(isOpen(number));
        EXPECT_TRUE(third.closeNow());
        EXPECT_FALSE(isOpen(number));
        EXPECT_TRUE(third.closeNow()) << "nothing is open any more";
    }
}

TEST(FileDescriptor, reportsAFailedClose) {
    FileDescriptor descriptor = opened("/dev/null");
    ASSERT_EQ(close(descriptor.number()), 0);
    EXPECT_FALSE(descriptor.closeNow());
    EXPECT_EQ(errno, EBADF);
}

TEST(ReadToEnd, readsFilesOfAnySizeIntoOneBuffer) {
    const test::ScratchFolder scratch;
    std::string buffer;
    for (const std::size_t size : {0U, 1U, 100'000U, 3U, 99'999U, 0U}) {
        const std::string bytes(size, static_cast<char>('a' + size % 26));
        test::writeFile(scratch / "file", bytes);
        // The expected size may be wrong: the file may have grown or shrunk.
        for (const std::size_t expected : {std::size_t{0}, size / 2, size, 2 * size}) {
            const std::size_t before = buffer.size();
            EXPECT_EQ(readToEnd(opened(scratch / "file"), buffer, {.expected = expected}), bytes);
            EXPECT_GE(buffer.size(), before);
        }
    }
}

TEST(ReadToEnd, keepsSpareBytesAfterTheContent) {
    const test::ScratchFolder scratch;
    constexpr std::size_t spare = 64;
    for (const std::size_t size : {0U, 63U, 64U, 65U, 5'000U}) {
        test::writeFile(scratch / "file", std::string(size, 'x'));
        for (const std::size_t expected : {std::size_t{0}, size}) {
            std::string buffer;
            const auto read =
                readToEnd(opened(scratch / "file"), buffer, {.expected = expected, .spare = spare});
            ASSERT_TRUE(read);
            EXPECT_EQ(read->size(), size);
            EXPECT_EQ(read->data(), buffer.data());
            EXPECT_GE(buffer.size(), read->size() + spare);
        }
    }
}

TEST(ReadToEnd, stopsAtTheLargestSizeAllowed) {
    const test::ScratchFolder scratch;
    test::writeFile(scratch / "file", std::string(1'000, 'x'));
    std::string buffer;
    EXPECT_TRUE(readToEnd(opened(scratch / "file"), buffer, {.most = 1'000}));
    EXPECT_EQ(readToEnd(opened(scratch / "file"), buffer, {.most = 999}), std::nullopt);
    EXPECT_EQ(errno, EFBIG);
    // A file without end.
    EXPECT_EQ(readToEnd(opened("/dev/zero"), buffer, {.most = 100'000}), std::nullopt);
    EXPECT_EQ(errno, EFBIG);
}

TEST(ReadToEnd, reportsFailures) {
    const test::ScratchFolder scratch;
    std::string buffer;
    EXPECT_EQ(readToEnd(FileDescriptor(), buffer, {}), std::nullopt);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(readToEnd(opened(scratch.path()), buffer, {}), std::nullopt);
    EXPECT_EQ(errno, EISDIR);
    test::writeFile(scratch / "file", "x");
    EXPECT_EQ(readToEnd(opened(scratch / "file"), buffer, {.expected = std::string::npos / 2}), std::nullopt);
    EXPECT_EQ(errno, ENOMEM);
}

} // namespace
} // namespace corvane
