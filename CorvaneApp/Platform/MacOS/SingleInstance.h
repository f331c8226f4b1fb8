#pragma once

#include "Platform/MacOS/Observation.h"
#include "Platform/SingleInstance.h"
#include "Support/FileDescriptor.h"

#include <filesystem>
#include <memory>

namespace corvane {

/// The system starts a bundle once and tells it when it is opened again. A process that was started
/// otherwise, as from a terminal, finds out by a lock that another one runs, and asks it through a
/// notification.
class MacSingleInstance : public SingleInstance {
    Q_OBJECT

  public:
    /// Both processes have to use the same folder, which is created if missing.
    explicit MacSingleInstance(std::filesystem::path folder);

    /// The user's folder for caches: temporary files are swept away while the application runs.
    [[nodiscard]] static std::filesystem::path standardFolder();

    /// Returns true as well if the folder cannot be used: two instances are better than none.
    [[nodiscard]] bool claim() override;

  private:
    std::filesystem::path folder_;
    files::FileDescriptor lock_; // given back by the kernel, however the process ends
    std::unique_ptr<Observation> openedAgain_;
    std::unique_ptr<Observation> askedByAnother_;
};

} // namespace corvane
