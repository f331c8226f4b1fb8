#include "Platform/Linux/DesktopLook.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <string_view>

namespace corvane {

namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

/// Whether one of the words is in the name and is not the beginning of a longer word.
template <std::size_t count>
bool hasWord(const std::string& name, const std::array<std::string_view, count>& words) {
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
        for (std::size_t at = name.find(word); at != std::string::npos; at = name.find(word, at + 1)) {
            const std::size_t end = at + word.size();
            if (end == name.size() || std::isalpha(static_cast<unsigned char>(name[end])) == 0) return true;
        }
        return false;
    });
}

ColorScheme colorScheme(const LookSources& sources) {
    if (sources.portal.scheme) return *sources.portal.scheme;
    for (const std::optional<int> window : {sources.kde.windowLightness, sources.lxqtWindowLightness}) {
        constexpr int middle = 128;
        if (window) return *window < middle ? ColorScheme::dark : ColorScheme::light;
    }
    // Neither a name without such a word nor a light palette proves anything: the palette is also light where
    // Qt has no theme for the desktop.
    return isDarkTheme(sources.xsettings.themeName) ? ColorScheme::dark : sources.palette;
}

} // namespace

bool isDarkTheme(const std::string& name) {
    // "Arc-Darker" and others with that ending are light, with dark title bars. "Blackbird" and "BlackMATE"
    // are dark, as are the inverse variants of high-contrast themes.
    constexpr std::array<std::string_view, 3> words{"dark", "darkest", "inverse"};
    const std::string lower = lowerCase(name);
    return hasWord(lower, words) || lower.starts_with("black");
}

bool isHighContrastTheme(const std::string& name) {
    const std::string lower = lowerCase(name);
    // GNOME's and MATE's.
    return lower.starts_with("highcontrast") || lower.starts_with("contrasthigh");
}

DesktopLook desktopLook(const LookSources& sources) {
    DesktopLook look;
    look.scheme = colorScheme(sources);
    const bool wantsContrast = sources.portal.highContrast || sources.portal.toolkitHighContrast ||
                               isHighContrastTheme(sources.xsettings.themeName);
    look.contrast = wantsContrast ? Contrast::high : Contrast::normal;
    look.reduceMotion = sources.portal.reducedMotion || !sources.portal.toolkitAnimations ||
                        sources.kde.animationFactor.value_or(1) <= 0 ||
                        !sources.xsettings.animations.value_or(true);
    look.textScale = sources.portal.textScale;
    return look;
}

} // namespace corvane
