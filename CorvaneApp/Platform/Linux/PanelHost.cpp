#include "Platform/Shared/PlainPanelHost.h"

namespace corvane {

std::unique_ptr<PanelHost> PanelHost::make(QWidget& window) {
    return std::make_unique<PlainPanelHost>(window);
}

} // namespace corvane
