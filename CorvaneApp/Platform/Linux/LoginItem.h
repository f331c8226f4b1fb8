#pragma once

#include "Platform/LoginItem.h"

#include <filesystem>

namespace corvane {

/// An autostart entry in the user's configuration folder.
class LinuxLoginItem : public LoginItem {
  public:
    /// `file`: the entry; `program`: the program that it starts, as an absolute path.
    LinuxLoginItem(std::filesystem::path file, std::filesystem::path program);

    /// The entry's standard path, and that of the running program.
    [[nodiscard]] static std::filesystem::path standardFile();
    [[nodiscard]] static std::filesystem::path runningProgram();

    /// The option that the entry passes to the program, to distinguish a start at login from one by the user.
    static constexpr const char* option = "--autostart";

    /// Also false when the entry is disabled, or starts a program that does not exist.
    [[nodiscard]] bool isEnabled() const override;
    void setEnabled(bool enabled) override;
    /// Detected by the option that the entry passes.
    [[nodiscard]] bool hasStartedThisProcess() const override;

  private:
    std::filesystem::path file_;
    std::filesystem::path program_;
};

} // namespace corvane
