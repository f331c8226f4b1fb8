#include "MenuBar/MenuBarLabel.h"

#include "Model/AppModel.h"
#include "Platform/SingleInstance.h"
#include "Platform/StatusItem.h"
#include "Style/StatusIcon.h"
#include "Style/Times.h"

#include <optional>
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
    const int count = model_.listedWaitingCount();
    const QString label = statusicon::label(count);
    const std::optional<Date> quiet = model_.quietUntil();
    const QString toolTip = quiet ? label + QLatin1Char('\n') + times::quietUntil(*quiet) : label;
    const bool isOther = std::exchange(shownCount_, count) != count;
    if (std::exchange(shownToolTip_, toolTip) != toolTip || isOther) statusItem_.show(count, label, toolTip);
}

} // namespace corvane
