#include "Controls/PrimaryButtonStyle.h"

#include "Style/Tokens.h"

namespace corvane {

QColor PrimaryButtonStyle::fill(const Look& look) const {
    return isEnabled && (isHovered || isPressed) ? Tokens::primaryHover(look) : Tokens::primary.color(look);
}

QColor PrimaryButtonStyle::ink(const Look& look) {
    return Tokens::onPrimary.color(look);
}

double PrimaryButtonStyle::opacity() const {
    if (!isEnabled) return Tokens::disabledOpacity;
    return isPressed ? Tokens::pressedOpacity : 1.0;
}

} // namespace corvane
