#pragma once

#include "Platform/LoginItem.h"

#include <filesystem>

namespace corvane {

/// An autostart entry in the user's configuration folder.
class LinuxLoginItem : public LoginItem {
  public:
    /// `file`: the entry; `program`: what it is to start, absolute.
    LinuxLoginItem(std::filesystem::path file, std::filesystem::path program);

    /// The standard place of the entry, and the running program.
    [[nodiscard]] static std::filesystem::path standardFile();
    [[nodiscard]] static std::filesystem::path runningProgram();

    /// False too when the entry was switched off, or starts a program that is not there.
    [[nodiscard]] bool isEnabled() const override;
    void setEnabled(bool enabled) override;

  private:
    std::filesystem::path file_;
    std::filesystem::path program_;
};

} // namespace corvane
