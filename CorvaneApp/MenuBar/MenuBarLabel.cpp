#include "MenuBar/MenuBarLabel.h"

#include "Model/AppModel.h"
#include "Platform/SingleInstance.h"
#include "Platform/StatusItem.h"
#include "Style/StatusIcon.h"

#include <utility>

namespace corvane {

MenuBarLabel::MenuBarLabel(AppModel& model, StatusItem& statusItem, const SingleInstance& singleInstance,
                           std::function<void()> openWindow)
    : model_(model)
    , statusItem_(statusItem)
    , openWindow_(std::move(openWindow)) {
    connect(&singleInstance, &SingleInstance::reopened, this, openWindow_);
    connect(&model_, &AppModel::changed, this, &MenuBarLabel::update);
    update();
}

void MenuBarLabel::appear() {
    const bool wasHandled = model_.launchWindowHandled();
    model_.setLaunchWindowHandled(true);
    if (wasHandled || !model_.hasCompletedOnboarding()) openWindow_();
}

void MenuBarLabel::update() {
    const auto count = static_cast<int>(model_.board().waitingCount());
    if (std::exchange(shownCount_, count) != count) statusItem_.show(count, statusicon::label(count));
}

} // namespace corvane
