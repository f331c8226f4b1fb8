#pragma once

#include "Platform/Activation.h"
#include "Platform/AgentProcesses.h"
#include "Platform/Announcer.h"
#include "Platform/Appearance.h"
#include "Platform/Applications.h"
#include "Platform/BannerPanel.h"
#include "Platform/FileBrowser.h"
#include "Platform/LoginItem.h"
#include "Platform/PanelHost.h"
#include "Platform/Platform.h"
#include "Platform/Scheduler.h"
#include "Platform/Screens.h"
#include "Platform/SingleInstance.h"
#include "Platform/Sounds.h"
#include "Platform/StatusItem.h"
#include "Platform/SystemSymbols.h"
#include "Platform/WindowShadow.h"

#include <QPointer>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A fake platform for tests: shows nothing, records all requests, and its time advances only on request.
namespace corvane::recording {

/// The fake time, shared by clock and scheduler.
class Time : public Scheduler {
  public:
    [[nodiscard]] Date now() const { return start_ + elapsed_; }

    void after(std::chrono::milliseconds delay, std::function<void()> work) override;

    /// Advances the time by `span`: everything that falls due runs in order, each at its own time.
    void advance(std::chrono::milliseconds span);

    /// Sets the wall clock, as a user or the network does; the scheduler's monotonic time is unaffected.
    void setWallClock(Date now) { start_ = now - Seconds(elapsed_); }

    [[nodiscard]] std::size_t pendingCount() const { return pending_.size(); }

  private:
    struct Item {
        std::chrono::milliseconds due;
        std::function<void()> work;
    };

    Date start_{1'790'000'000, 0};
    std::chrono::milliseconds elapsed_{0};
    std::vector<Item> pending_;
};

/// The record of one panel.
struct PanelRecord {
    std::unique_ptr<PanelContent> content;
    QSize size;
    QPoint origin;
    bool isVisible = false;
    bool isFadingOut = false;
    int contentCount = 0;
    std::vector<std::chrono::milliseconds> fadeIns;
    std::vector<int> slides;
    std::vector<std::chrono::milliseconds> fadeOuts;
    int orderOutCount = 0;
};

class Panels : public BannerPanels {
  public:
    [[nodiscard]] std::unique_ptr<BannerPanel> make() override;

    void keepBelow(const std::vector<QWidget*>& windows) override { above = windows; }

    /// The windows that the panels must stay below.
    std::vector<QWidget*> above;

    /// In order of creation; a record outlives its panel.
    std::vector<std::shared_ptr<PanelRecord>> all;

    /// Those that are visible and not fading out, from top to bottom.
    [[nodiscard]] std::vector<PanelRecord*> visible() const;

    /// The panels in the order in which they were last raised, the frontmost last.
    std::vector<const PanelRecord*> stacking;

    /// Called after each move of a panel.
    std::function<void()> moved;
};

/// Merely shows windows.
class PresentedWindows : public Activation {
  public:
    void present(QWidget& window) override;

    std::vector<const QWidget*> presented;
};

class FakeWindowShadow : public WindowShadow {
  public:
    [[nodiscard]] bool isBlended() const override { return blended; }
    [[nodiscard]] QMargins margins() const override { return blended ? room : QMargins(); }
    [[nodiscard]] bool isBlurredBehind() const override { return blurred; }
    void setBlurBehind(const QWidget& /*window*/, const QPainterPath& outline) override { behind = outline; }
    void paint(QPainter& /*painter*/, const QWidget& /*window*/, const QPainterPath& outline,
               QSize /*cardSize*/) override {
        painted.push_back(outline);
    }
    void cut(QWidget& /*window*/, const QPainterPath& outline) override {
        lastCut = blended ? QPainterPath() : outline;
    }

    bool blended = true;
    bool blurred = false;
    /// The outline behind which the last window requested the blur.
    QPainterPath behind;
    QMargins room{10, 11, 12, 13};
    /// The outlines of the cards whose shadows were painted.
    std::vector<QPainterPath> painted;
    /// The mask of the last window; empty if it has none.
    QPainterPath lastCut;
};

/// Draws the symbols that it knows as a filled box.
class FakeSystemSymbols : public SystemSymbols {
  public:
    [[nodiscard]] bool draw(QImage& image, const QString& name, const QRectF& box) override;

    QStringList known;
    std::vector<QString> asked;
};

/// Shows its window and gives it the keyboard focus, both at once.
class FakePanelHost : public PanelHost {
  public:
    explicit FakePanelHost(QWidget& window)
        : window_(window) {}

    void setGeometry(const QRect& newGeometry, const QPainterPath& newOutline) override;
    void present() override;
    [[nodiscard]] bool hasKeyboard() const override;

    void setKeyboard(bool hasKeyboard);

    QRect geometry;
    QPainterPath outline;
    int presentCount = 0;

  private:
    QWidget& window_;
    bool hasKeyboard_ = false;
};

class FakePanelHosts : public PanelHosts {
  public:
    [[nodiscard]] std::unique_ptr<PanelHost> make(QWidget& window) override;

    /// The host created last; null once it is destroyed.
    QPointer<FakePanelHost> last;
};

class FixedScreens : public Screens {
  public:
    [[nodiscard]] std::optional<QRect> mainVisibleFrame() const override { return frame; }
    [[nodiscard]] std::optional<QRect> visibleFrameAt(QPoint /*place*/) const override { return frame; }
    void setFrame(std::optional<QRect> newFrame);

    std::optional<QRect> frame = QRect(0, 30, 1280, 770);
};

class FixedAppearance : public Appearance {
  public:
    [[nodiscard]] ColorScheme colorScheme() const override { return scheme; }
    [[nodiscard]] bool reduceMotion() const override { return motionIsReduced; }
    [[nodiscard]] Contrast contrast() const override { return wantedContrast; }
    [[nodiscard]] double textScale() const override { return wantedTextScale; }

    ColorScheme scheme = ColorScheme::light;
    bool motionIsReduced = false;
    Contrast wantedContrast = Contrast::normal;
    double wantedTextScale = 1;
};

class Announcements : public Announcer {
  public:
    void announce(const QString& text) override { spoken.push_back(text); }

    std::vector<QString> spoken;
};

class PlayedSounds : public Sounds {
  public:
    void play(const std::string& name) override { played.push_back(name); }

    std::vector<std::string> played;
};

class Activations : public Applications {
  public:
    void activate(const Terminal& terminal, Report report) override {
        if (terminal.bundleID) {
            activated.push_back(*terminal.bundleID);
        } else {
            searched.emplace_back(terminal.agent, terminal.directory);
        }
        last = terminal;
        if (reportsAtOnce) {
            report(isFound);
        } else {
            pending.push_back(std::move(report));
        }
    }

    /// The identifiers of the terminals to activate; the agents and directories of those without an
    /// identifier.
    std::vector<std::string> activated;
    std::vector<std::pair<std::string, std::string>> searched;
    Terminal last;
    bool isFound = true;
    bool reportsAtOnce = true;
    std::vector<Report> pending;
};

/// A fake process table.
class FakeAgentProcesses : public AgentProcesses {
  public:
    struct Process {
        ProcessIdentity identity;
        std::string agent;
        std::string directory;
    };

    [[nodiscard]] std::vector<ProcessIdentity> running(const std::string& agent,
                                                       const std::string& directory) const override;
    [[nodiscard]] bool isRunning(const ProcessIdentity& process) const override;

    std::vector<Process> processes;
    mutable int lookCount = 0; ///< the number of queries
};

class FakeLoginItem : public LoginItem {
  public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }
    void setEnabled(bool wanted) override {
        if (failure) throw LoginItemError(*failure);
        enabled = wanted;
    }
    [[nodiscard]] bool hasStartedThisProcess() const override { return isStarter; }

    bool enabled = false;
    bool isStarter = false;
    /// Makes every change fail with this message.
    std::optional<std::string> failure;
};

class Reveals : public FileBrowser {
  public:
    void reveal(const std::filesystem::path& file) override { revealed.push_back(file); }

    std::vector<std::filesystem::path> revealed;
};

class FakeStatusItem : public StatusItem {
  public:
    void show(int count, const QString& text, const QString& tip) override {
        waitingCount = count;
        label = text;
        toolTip = tip;
        ++showCount;
    }
    void setMenu(QMenu* newMenu) override { menu = newMenu; }
    [[nodiscard]] bool isAvailable() const override { return available; }
    [[nodiscard]] QRect place() const override { return iconPlace; }

    int waitingCount = -1;
    QString label;
    QString toolTip;
    int showCount = 0;
    QMenu* menu = nullptr;
    bool available = true;
    QRect iconPlace;
};

class FakeSingleInstance : public SingleInstance {
  public:
    [[nodiscard]] bool claim() override { return isFirst; }

    bool isFirst = true;
};

struct RecordingPlatform {
    Time time;
    Panels panels;
    FakePanelHosts panelHosts;
    PresentedWindows activation;
    FakeWindowShadow windowShadow;
    FakeSystemSymbols systemSymbols;
    FixedScreens screens;
    FixedAppearance appearance;
    Announcements announcer;
    PlayedSounds sounds;
    Activations applications;
    FakeAgentProcesses agentProcesses;
    FakeLoginItem loginItem;
    Reveals fileBrowser;
    FakeStatusItem statusItem;
    FakeSingleInstance singleInstance;
    MenuBars menuBars = MenuBars::ofWindows;

    [[nodiscard]] PlatformServices services();
};

} // namespace corvane::recording
