#pragma once

#include "Platform/FileBrowser.h"

namespace corvane {

/// The Finder.
class MacFileBrowser : public FileBrowser {
  public:
    void reveal(const std::filesystem::path& file) override;
};

} // namespace corvane
