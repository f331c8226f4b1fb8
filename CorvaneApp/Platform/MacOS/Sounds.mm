#include "Platform/MacOS/Sounds.h"

#include <QString>

#import <AppKit/AppKit.h>

namespace corvane {

struct MacSounds::Parts {
    NSSound* last = nil; // retained while it may still play
};

MacSounds::MacSounds()
    : parts_(std::make_unique<Parts>()) {}

MacSounds::~MacSounds() = default;

void MacSounds::play(const std::string& name) {
    NSSound* const sound = [NSSound soundNamed:QString::fromStdString(name).toNSString()];
    if (!sound) return;
    parts_->last = sound;
    [sound play];
}

} // namespace corvane
