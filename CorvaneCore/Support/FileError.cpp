#include "Support/FileError.h"

#include <array>
#include <cerrno>
#include <utility>

namespace corvane::files {

namespace {

using Operation = FileError::Operation;

std::string reason(const std::error_code& code, Words words) {
    struct Reason {
        int error;
        Phrase text;
    };
    static constexpr std::array reasons{
        Reason{ENOSPC, translatable("corvane::FileError", "there is no space left on the disk")},
        Reason{EDQUOT, translatable("corvane::FileError", "your disk quota is exceeded")},
        Reason{EROFS, translatable("corvane::FileError", "the disk is read-only")},
        Reason{EACCES, translatable("corvane::FileError", "you don't have permission")},
        Reason{EPERM, translatable("corvane::FileError", "the system does not permit it")},
        Reason{ENOENT, translatable("corvane::FileError", "a folder or file on the way to it is missing")},
        Reason{ENOTDIR, translatable("corvane::FileError", "a part of its path is not a folder")},
        Reason{EISDIR, translatable("corvane::FileError", "a folder is in its place")},
        Reason{EINVAL, translatable("corvane::FileError", "it is not an ordinary file")},
        Reason{EEXIST, translatable("corvane::FileError", "something else is in its place")},
        Reason{ELOOP, translatable("corvane::FileError", "its symbolic links form a loop")},
        Reason{ENAMETOOLONG, translatable("corvane::FileError", "its name is too long")},
        Reason{EILSEQ, translatable("corvane::FileError",
                                    "its path has characters that the agent's configuration cannot hold")},
        Reason{ENOTSUP, translatable("corvane::FileError", "there is no Trash on its disk")},
        Reason{EXDEV, translatable("corvane::FileError", "it lies on another disk")},
        Reason{EBUSY, translatable("corvane::FileError", "another program keeps changing it")},
        Reason{EIO, translatable("corvane::FileError", "the disk reported an error")},
        Reason{EFBIG, translatable("corvane::FileError", "it would be too large")},
        Reason{EMFILE, translatable("corvane::FileError", "too many files are open")},
        Reason{ENFILE, translatable("corvane::FileError", "too many files are open")},
        Reason{ENOMEM, translatable("corvane::FileError", "there is not enough memory")},
    };
    for (const Reason& known : reasons) {
        if (code == std::error_code(known.error, std::generic_category())) return words(known.text);
    }
    return filled(words(translatable("corvane::FileError", "the system reported \"%1\"")), {code.message()});
}

Phrase failure(Operation operation) {
    switch (operation) {
    case Operation::read:
        return translatable("corvane::FileError", "The file \"%1\" could not be read because %2.");
    case Operation::write:
        return translatable("corvane::FileError", "The file \"%1\" could not be written because %2.");
    case Operation::backUp:
        return translatable("corvane::FileError", "The file \"%1\" could not be backed up because %2.");
    case Operation::createFolder:
        return translatable("corvane::FileError", "The folder \"%1\" could not be created because %2.");
    case Operation::move:
        return translatable("corvane::FileError", "The file \"%1\" could not be moved because %2.");
    case Operation::trash:
        return translatable("corvane::FileError",
                            "The file \"%1\" could not be moved to the Trash because %2.");
    }
    return translatable("corvane::FileError", "The file \"%1\" could not be used because %2.");
}

} // namespace

FileError::FileError(Operation operation, std::filesystem::path path, int error)
    : FileError(operation, std::move(path), std::error_code(error, std::generic_category())) {}

FileError::FileError(Operation operation, std::filesystem::path path, std::error_code error)
    : std::system_error(error, path.string())
    , operation_(operation)
    , path_(std::move(path)) {}

std::string FileError::description(Words words) const {
    return filled(words(failure(operation_)), {path_.string(), reason(code(), words)});
}

} // namespace corvane::files
