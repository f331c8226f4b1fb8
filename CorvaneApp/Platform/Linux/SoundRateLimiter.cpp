#include "Platform/Linux/SoundRateLimiter.h"

#include <algorithm>

namespace corvane {

bool SoundRateLimiter::admit(const std::string& name, Moment now) {
    const auto isOver = [now](const Started& started) { return now - started.moment >= soundingTime; };
    sounding_.erase(std::remove_if(sounding_.begin(), sounding_.end(), isOver), sounding_.end());
    const auto isSame = [&name](const Started& started) { return started.name == name; };
    if (sounding_.size() >= mostAtOnce || std::any_of(sounding_.begin(), sounding_.end(), isSame))
        return false;
    sounding_.push_back({name, now});
    return true;
}

} // namespace corvane
