#pragma once

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace corvane {

/// Whether one of `desktops`, the value of XDG_CURRENT_DESKTOP, is one of `names`.
[[nodiscard]] inline bool isDesktop(std::string_view desktops,
                                    std::initializer_list<std::string_view> names) {
    while (!desktops.empty()) {
        const std::string_view name = desktops.substr(0, desktops.find(':'));
        if (std::find(names.begin(), names.end(), name) != names.end()) return true;
        desktops.remove_prefix(std::min(desktops.size(), name.size() + 1));
    }
    return false;
}

} // namespace corvane
