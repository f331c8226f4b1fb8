#include "Platform/Recording/RecordingPlatform.h"

#include "Style/Tokens.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace corvane::recording {

void Time::after(std::chrono::milliseconds delay, std::function<void()> work) {
    pending_.push_back({elapsed_ + delay, std::move(work)});
}

void Time::advance(std::chrono::milliseconds span) {
    const std::chrono::milliseconds end = elapsed_ + span;
    for (;;) {
        const auto next = std::min_element(pending_.begin(), pending_.end(),
                                           [](const Item& a, const Item& b) { return a.due < b.due; });
        if (next == pending_.end() || next->due > end) break;
        elapsed_ = std::max(elapsed_, next->due);
        const std::function<void()> work = std::move(next->work);
        pending_.erase(next);
        work();
    }
    elapsed_ = end;
}

namespace {

class RecordingPanel : public BannerPanel {
  public:
    RecordingPanel(std::shared_ptr<PanelRecord> record, Panels& panels)
        : record_(std::move(record))
        , panels_(panels) {}

    void setContent(std::unique_ptr<PanelContent> view, QSize size) override {
        // As with a real panel, the old view may still be running one of its own handlers.
        if (PanelContent* const old = record_->content.release()) old->deleteLater();
        record_->content = std::move(view);
        record_->size = size;
        ++record_->contentCount;
    }

    [[nodiscard]] QSize size() const override { return record_->size; }
    void setOrigin(QPoint origin) override {
        record_->origin = origin;
        if (panels_.moved) panels_.moved();
    }

    void fadeIn(std::chrono::milliseconds duration, int slide) override {
        record_->isVisible = true;
        record_->fadeIns.push_back(duration);
        record_->slides.push_back(slide);
        orderFront();
    }

    void fadeOut(std::chrono::milliseconds duration) override {
        record_->isFadingOut = true;
        record_->fadeOuts.push_back(duration);
    }

    void orderOut() override {
        record_->isVisible = false;
        ++record_->orderOutCount;
    }

    void orderFront() override {
        if (!record_->isVisible) return;
        std::erase(panels_.stacking, record_.get());
        panels_.stacking.push_back(record_.get());
    }

  private:
    std::shared_ptr<PanelRecord> record_;
    Panels& panels_;
};

} // namespace

std::unique_ptr<BannerPanel> Panels::make() {
    all.push_back(std::make_shared<PanelRecord>());
    return std::make_unique<RecordingPanel>(all.back(), *this);
}

std::vector<PanelRecord*> Panels::visible() const {
    std::vector<PanelRecord*> result;
    for (const std::shared_ptr<PanelRecord>& record : all) {
        if (record->isVisible && !record->isFadingOut) result.push_back(record.get());
    }
    std::stable_sort(result.begin(), result.end(), [](const PanelRecord* a, const PanelRecord* b) {
        return a->origin.y() < b->origin.y();
    });
    return result;
}

void PresentedWindows::present(QWidget& window) {
    presented.push_back(&window);
    window.show();
}

bool FakeSystemSymbols::draw(QImage& image, const QString& name, const QRectF& box) {
    asked.push_back(name);
    if (!known.contains(name)) return false;
    QPainter(&image).fillRect(box, Tokens::shadow(1));
    return true;
}

std::vector<ProcessIdentity> FakeAgentProcesses::running(const std::string& agent,
                                                         const std::string& directory) const {
    ++lookCount;
    std::vector<ProcessIdentity> found;
    for (const Process& process : processes) {
        if (process.agent == agent && process.directory == directory) found.push_back(process.identity);
    }
    return found;
}

bool FakeAgentProcesses::isRunning(const ProcessIdentity& process) const {
    ++lookCount;
    return std::any_of(processes.begin(), processes.end(),
                       [&](const Process& each) { return each.identity == process; });
}

void FakePanelHost::setGeometry(const QRect& newGeometry, const QPainterPath& newOutline) {
    geometry = newGeometry;
    outline = newOutline;
}

void FakePanelHost::present() {
    ++presentCount;
    window_.show();
    setKeyboard(true);
}

void FakePanelHost::setKeyboard(bool hasKeyboard) {
    hasKeyboard_ = hasKeyboard;
    Q_EMIT keyboardChanged();
}

bool FakePanelHost::hasKeyboard() const {
    return hasKeyboard_ && window_.isVisible();
}

std::unique_ptr<PanelHost> FakePanelHosts::make(QWidget& window) {
    auto host = std::make_unique<FakePanelHost>(window);
    last = host.get();
    return host;
}

void FixedScreens::setFrame(std::optional<QRect> newFrame) {
    frame = newFrame;
    Q_EMIT changed();
}

PlatformServices RecordingPlatform::services() {
    return {
        .clock = [this] { return time.now(); },
        .scheduler = time,
        .panels = panels,
        .panelHosts = panelHosts,
        .activation = activation,
        .windowShadow = windowShadow,
        .systemSymbols = systemSymbols,
        .screens = screens,
        .appearance = appearance,
        .announcer = announcer,
        .sounds = sounds,
        .applications = applications,
        .agentProcesses = agentProcesses,
        .loginItem = loginItem,
        .fileBrowser = fileBrowser,
        .statusItem = statusItem,
        .singleInstance = singleInstance,
        .menuBars = menuBars,
    };
}

} // namespace corvane::recording
