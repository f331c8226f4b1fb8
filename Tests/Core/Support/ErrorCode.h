#pragma once

#include "Support/FileError.h"

#include <functional>

namespace corvane::test {

/// The code of the FileError that `operation` throws; 0 if it throws none.
inline int errorCode(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const files::FileError& error) {
        return error.code().value();
    }
    return 0;
}

} // namespace corvane::test
