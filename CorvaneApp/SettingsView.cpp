#include "SettingsView.h"

#include "Settings/AboutTab.h"
#include "Settings/AgentsTab.h"
#include "Settings/AlertsTab.h"

namespace corvane {

SettingsView::SettingsView(AppModel& model, FileBrowser& fileBrowser, const ReduceMotion& reduceMotion,
                           const links::Opener& openLink, QWidget* parent)
    : SettingsPages(contentSize, parent) {
    addPage(QStringLiteral("terminal"), tr("Agents"), new AgentsTab(model, fileBrowser, this));
    addPage(QStringLiteral("bell"), tr("Alerts"), new AlertsTab(model, reduceMotion, this));
    addPage(QStringLiteral("info.circle"), tr("About"), new AboutTab(openLink, this));
}

} // namespace corvane
