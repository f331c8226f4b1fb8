#pragma once

#include "Platform/FileBrowser.h"

namespace corvane {

/// The file manager on the session bus, else the default program for folders.
class LinuxFileBrowser : public FileBrowser {
  public:
    void reveal(const std::filesystem::path& file) override;
};

} // namespace corvane
