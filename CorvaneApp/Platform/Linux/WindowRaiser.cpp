#include "Platform/Linux/WindowRaiser.h"

#include "Platform/Linux/KWinWindows.h"
#include "Platform/Linux/SwayIpc.h"
#include "Platform/Linux/SwayWindows.h"
#include "Platform/Linux/XWindows.h"

#include <QtGlobal>

#include <optional>

namespace corvane {

std::vector<std::shared_ptr<WindowRaiser>> windowRaisers() {
    std::vector<std::shared_ptr<WindowRaiser>> result;
    if (const std::optional<QString> socket = sway::socket())
        result.push_back(std::make_shared<SwayWindowRaiser>(*socket));
    // Before the X11 raiser, which would find the X11 terminal from which a native one was started.
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        result.push_back(std::make_shared<KWinWindowRaiser>());
    result.push_back(std::make_shared<XWindowRaiser>());
    return result;
}

} // namespace corvane
