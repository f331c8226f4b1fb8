#pragma once

#include "Platform/FileBrowser.h"

namespace corvane {

/// The file manager that answers on the session bus, else whatever opens folders.
class LinuxFileBrowser : public FileBrowser {
  public:
    void reveal(const std::filesystem::path& file) override;
};

} // namespace corvane
