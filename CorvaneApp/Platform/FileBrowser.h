#pragma once

#include <filesystem>

namespace corvane {

/// The desktop's file manager. Main thread only.
class FileBrowser {
  public:
    FileBrowser() = default;
    FileBrowser(const FileBrowser&) = delete;
    FileBrowser& operator=(const FileBrowser&) = delete;
    virtual ~FileBrowser() = default;

    /// Shows the folder that holds `file`, with the file selected where the file manager can. Returns at once
    /// and never fails visibly.
    virtual void reveal(const std::filesystem::path& file) = 0;
};

} // namespace corvane
