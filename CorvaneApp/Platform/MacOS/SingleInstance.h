#pragma once

#include "Platform/MacOS/Observation.h"
#include "Platform/SingleInstance.h"
#include "Support/FileDescriptor.h"

#include <filesystem>
#include <memory>

namespace corvane {

/// The system starts a bundle once and notifies it when it is opened again. A process that was started
/// otherwise, for example from a terminal, detects a running instance by a lock and asks it through a
/// notification to show its window.
class MacSingleInstance : public SingleInstance {
    Q_OBJECT

  public:
    /// Both processes have to use the same folder, which is created if missing.
    explicit MacSingleInstance(std::filesystem::path folder);

    /// The user's caches folder: the system deletes temporary files while the application runs.
    [[nodiscard]] static std::filesystem::path standardFolder();

    /// Also returns true if the folder cannot be used: two instances are better than none.
    [[nodiscard]] bool claim() override;

  private:
    std::filesystem::path folder_;
    files::FileDescriptor lock_; // released by the kernel, however the process ends
    std::unique_ptr<Observation> openedAgain_;
    std::unique_ptr<Observation> askedByAnother_;
};

} // namespace corvane
