#pragma once

#include "Platform/Sounds.h"

#include <memory>

namespace corvane {

/// The system's named sounds. A sound that is still playing is not restarted.
class MacSounds : public Sounds {
  public:
    MacSounds();
    ~MacSounds() override;

    void play(const std::string& name) override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane
