#include "Platform/Linux/SoundQueue.h"

#include <utility>

namespace corvane {

void SoundQueue::add(std::string name, Moment now) {
    forgetOld(now);
    requests_.push_back({std::move(name), now});
}

std::optional<std::string> SoundQueue::next(Moment now) {
    forgetOld(now);
    if (requests_.empty()) return std::nullopt;
    std::string name = std::move(requests_.front().name);
    requests_.pop_front();
    return name;
}

void SoundQueue::forgetOld(Moment now) {
    while (!requests_.empty() && now - requests_.front().moment > longestWait) {
        requests_.pop_front();
    }
}

} // namespace corvane
