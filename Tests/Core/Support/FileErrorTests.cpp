#include "Support/FileError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace corvane {
namespace {

using files::FileError;

TEST(FileError, describesReasonsInSentences) {
    EXPECT_EQ(FileError(FileError::Operation::write, "/h/.claude/settings.json", ENOSPC).description(),
              "The file \"/h/.claude/settings.json\" could not be written because there is no space left on "
              "the disk.");
    EXPECT_EQ(FileError(FileError::Operation::createFolder, "/h/.codex", EACCES).description(),
              "The folder \"/h/.codex\" could not be created because you don't have permission.");
    EXPECT_EQ(FileError(FileError::Operation::backUp, "/h/f", EEXIST).description(),
              "The file \"/h/f\" could not be backed up because something else is in its place.");
    EXPECT_EQ(FileError(FileError::Operation::read, "/h/f", ECHILD).description(),
              "The file \"/h/f\" could not be read because the system reported \"No child processes\".");
    for (const int code :
         {ENOSPC,       EDQUOT, EROFS,   EACCES, EPERM, ENOENT, ENOTDIR, EISDIR, EINVAL, EEXIST, ELOOP,
          ENAMETOOLONG, EILSEQ, ENOTSUP, EXDEV,  EBUSY, EIO,    EFBIG,   EMFILE, ENFILE, ENOMEM}) {
        EXPECT_EQ(
            FileError(FileError::Operation::read, "/h/f", code).description().find("the system reported"),
            std::string::npos)
            << code;
    }
    const FileError error(FileError::Operation::move, "/h/f", EIO);
    EXPECT_EQ(error.operation(), FileError::Operation::move);
    EXPECT_EQ(error.path(), "/h/f");
    EXPECT_EQ(error.code(), std::error_code(EIO, std::generic_category()));
}

} // namespace
} // namespace corvane
