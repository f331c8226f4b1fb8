#include "Platform/MacOS/BannerPanel.h"

#include "Platform/MacOS/NativePanel.h"
#include "Platform/Shared/MainThread.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

// Added to a slide's duration: after that, the animation no longer sets positions.
constexpr std::chrono::milliseconds settling{40};

class MacBannerPanel : public BannerPanel {
  public:
    MacBannerPanel() {
        slide_.setSingleShot(true);
        slide_.setTimerType(Qt::PreciseTimer);
        // An animation may have overwritten a position that was set meanwhile.
        QObject::connect(&slide_, &QTimer::timeout, &slide_, [this] { panel_.setOrigin(origin_); });
    }

    MacBannerPanel(const MacBannerPanel&) = delete;
    MacBannerPanel& operator=(const MacBannerPanel&) = delete;
    ~MacBannerPanel() override {
        if (content_) NativePanel::release(*content_);
    }

    void setContent(std::unique_ptr<PanelContent> view, QSize size) override {
        requireMainThread();
        // The old view may be in the middle of handling a click.
        if (PanelContent* const old = std::exchange(content_, std::move(view)).release()) {
            NativePanel::release(*old);
            old->deleteLater();
        }
        size_ = size;
        content_->setOnMaterial(true);
        content_->setFixedSize(size);
        panel_.setContent(*content_, size, content_->outline());
        place();
    }

    [[nodiscard]] QSize size() const override { return size_; }

    void setOrigin(QPoint origin) override {
        requireMainThread();
        origin_ = origin;
        place();
    }

    void fadeIn(std::chrono::milliseconds duration, int slide) override {
        requireMainThread();
        slide_.stop();
        if (content_) content_->show();
        panel_.setIgnoresClicks(false);
        panel_.setOpacity(0);
        opacity_ = 1;
        panel_.setOrigin(origin_ - QPoint(0, slide));
        panel_.orderFront();
        if (slide == 0) {
            panel_.animate(opacity_, std::nullopt, duration);
            return;
        }
        panel_.animate(opacity_, origin_, duration);
        slide_.start(duration + settling);
    }

    void fadeOut(std::chrono::milliseconds duration) override {
        requireMainThread();
        if (!panel_.isVisible()) return;
        panel_.setIgnoresClicks(true);
        opacity_ = 0;
        panel_.animate(opacity_, std::nullopt, duration);
    }

    void orderOut() override {
        requireMainThread();
        slide_.stop();
        panel_.orderOut();
        // A hidden view stops its clock.
        if (content_) content_->hide();
    }

    void orderFront() override {
        requireMainThread();
        if (panel_.isVisible()) panel_.orderFront();
    }

    [[nodiscard]] void* handle() const { return panel_.handle(); }

  private:
    void place() {
        if (slide_.isActive()) {
            // A plain position would be overwritten by the animation's next step.
            panel_.animate(
                opacity_, origin_,
                std::max(slide_.remainingTimeAsDuration() - settling, std::chrono::milliseconds(0)));
        } else {
            panel_.setOrigin(origin_);
        }
    }

    NativePanel panel_;
    std::unique_ptr<PanelContent> content_;
    QSize size_;
    QPoint origin_;
    double opacity_ = 1; // the target of the fade
    QTimer slide_;       // runs while the panel is on its way down
};

} // namespace

std::unique_ptr<BannerPanel> MacBannerPanels::make() {
    return std::make_unique<MacBannerPanel>();
}

void* nativeHandle(const BannerPanel& panel) {
    return static_cast<const MacBannerPanel&>(panel).handle();
}

} // namespace corvane
