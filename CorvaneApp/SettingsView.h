#pragma once

#include "Controls/Controls.h"
#include "Controls/Links.h"
#include "Settings/SettingsPages.h"

namespace corvane {

class AppModel;
class FileBrowser;

/// The settings window's content, three tabs. Holds no state but the selected tab; shows the model and calls
/// it. Main thread only.
class SettingsView : public SettingsPages {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr QSize contentSize{560, 440};
    /// The index of the tab "About".
    static constexpr int aboutTab = 2;

    /// What is passed by reference must outlive the view.
    SettingsView(AppModel& model, FileBrowser& fileBrowser, const ReduceMotion& reduceMotion,
                 const links::Opener& openLink, QWidget* parent = nullptr);
};

} // namespace corvane
