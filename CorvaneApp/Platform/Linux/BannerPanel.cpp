#include "Platform/Linux/BannerPanel.h"

#include "Platform/Linux/Compositing.h"
#include "Platform/Linux/Shadow.h"
#include "Platform/Linux/X11.h"
#include "Platform/Shared/MainThread.h"
#include "Style/Tokens.h"

#include <QBackingStore>
#include <QEasingCurve>
#include <QPaintEvent>
#include <QPainter>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QVariantAnimation>
#include <QWindow>

#include <functional>
#include <map>
#include <tuple>
#include <utility>

namespace corvane {

namespace {

/// One image per card size, colour scheme and scale, shared by all panels.
const QImage& sharedShadow(const PanelContent& card, ColorScheme scheme, qreal ratio) {
    static std::map<std::tuple<int, int, ColorScheme, qreal>, QImage> shadows;
    QImage& image = shadows[{card.width(), card.height(), scheme, ratio}];
    if (image.isNull()) image = cardShadow(card.outline(), card.size(), scheme, ratio);
    return image;
}

/// The native window: the card, with margins for the shadow if windows are blended.
class PanelWindow : public QWidget {
  public:
    PanelWindow(const StackingGuard& guard, PanelDamage& damage)
        : guard_(guard)
        , damage_(damage) {
        damage_.add(*this);
        QObject::connect(&guard_, &StackingGuard::arrangementChanged, this, [this] {
            if (blended_ && card_ != nullptr) update(QRegion(rect()) - card_->geometry());
        });
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                       Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint |
                       Qt::X11BypassWindowManagerHint);
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_QuitOnClose, false);
        setWindowTitle(QStringLiteral("Corvane"));
        // The attribute below needs a native window.
        winId();
        setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    }

    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;
    ~PanelWindow() override { damage_.remove(*this); }

    void setCard(std::unique_ptr<PanelContent> card, QSize size) {
        PanelContent* const old = std::exchange(card_, card.release());
        card_->setParent(this);
        card_->setFixedSize(size);
        layOut();
        card_->show();
        if (old != nullptr) {
            // The old view may be in the middle of handling a click.
            old->hide();
            old->deleteLater();
        }
    }

    [[nodiscard]] PanelContent* card() const { return card_; }
    [[nodiscard]] bool isBlended() const { return blended_; }
    [[nodiscard]] QMargins margins() const { return blended_ ? shadowMargins : QMargins(); }

    /// Rereads whether windows are blended and what lies behind them is blurred, since the compositing
    /// manager or its effects may have changed, and the scale, which may differ on another screen. Returns
    /// whether anything changed.
    bool followDesktop() {
        const bool blended = Compositing::instance().isBlended();
        const bool blurred = Compositing::instance().isBlurredBehind();
        if (blended == blended_ && blurred == blurred_ && devicePixelRatioF() == arrangedRatio_) return false;
        blended_ = blended;
        blurred_ = blurred;
        layOut();
        update();
        return true;
    }

    /// Resizes the native window and its backing store to the current scale: Qt compares sizes in
    /// device-independent pixels only, and would defer it.
    void resizeNatively() {
        if (QWindow* const native = windowHandle()) native->setGeometry(geometry());
        if (QBackingStore* const store = backingStore()) store->resize(size());
    }

    /// Moves the window `offset` below its place. Returns whether the place changed.
    bool moveTo(QPoint place, int offset) {
        move(place.x(), place.y() + offset);
        x11::flush();
        return std::exchange(place_, place) != place;
    }

    /// `rescaled` is called when the window's scale has changed, on versions of Qt that report it.
    void setRescaled(std::function<void()> rescaled) { rescaled_ = std::move(rescaled); }

    void ignoreClicks() { x11::setInputShape(nativeWindow(), {}); }

  protected:
    void showEvent(QShowEvent* event) override {
        // Qt raises a tool window before this event, and maps it after it.
        StackingGuard::prepare(*this);
        QWidget::showEvent(event);
    }

    bool event(QEvent* event) override {
        // The window's contents and those of its card are about to be painted.
        if (event->type() == QEvent::UpdateRequest) damage_.reportAll();
        const bool isHandled = QWidget::event(event);
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
        // Since Qt 6.6, a window has the new scale only after its screen has reported the change.
        if (event->type() == QEvent::DevicePixelRatioChange && rescaled_) rescaled_();
#endif
        return isHandled;
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        const Look look = Tokens::look(palette());
        if (!blended_ || card_ == nullptr || look.isHighContrast()) return;
        QPainter painter(this);
        painter.drawImage(QPoint(), sharedShadow(*card_, look.scheme, devicePixelRatioF()));
        // A shadow falls on what is behind all cards, never on another card. Raising the other card is not
        // enough: Mutter draws the window that was mapped last on top.
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        for (const QWidget* const window : guard_.windows()) {
            const auto* const other = dynamic_cast<const PanelWindow*>(window);
            if (other == nullptr || other == this || other->card_ == nullptr) continue;
            // Ignores slides, which are soon over.
            const QPoint place = other->place_ + other->card_->pos() - place_;
            painter.fillPath(other->card_->outline().translated(place), Tokens::shadow(1));
        }
    }

  private:
    void layOut() {
        if (card_ == nullptr) return;
        card_->setBlurredBehind(blurred_);
        card_->move(margins().left(), margins().top());
        setFixedSize(card_->size().grownBy(margins()));
        arrangedRatio_ = devicePixelRatioF();
        const QRectF card(QPointF(card_->pos()) * arrangedRatio_, QSizeF(card_->size()) * arrangedRatio_);
        x11::setInputShape(nativeWindow(), {card.toAlignedRect()});
        x11::setBlurRegion(nativeWindow(),
                           blurred_ ? inPixels(card_->outline().translated(card_->pos()), arrangedRatio_)
                                    : QRegion());
        // Without blending, whatever is not painted would be black.
        x11::setBoundingShape(nativeWindow(),
                              blended_ ? QRegion() : inPixels(card_->outline(), arrangedRatio_));
        x11::flush();
    }

    [[nodiscard]] xcb_window_t nativeWindow() const {
        return static_cast<xcb_window_t>(internalWinId());
    }

    const StackingGuard& guard_;
    PanelDamage& damage_;
    PanelContent* card_ = nullptr;
    bool blended_ = Compositing::instance().isBlended();
    bool blurred_ = Compositing::instance().isBlurredBehind();
    qreal arrangedRatio_ = 1;
    QPoint place_; // without the slide
    std::function<void()> rescaled_;
};

class LinuxBannerPanel : public BannerPanel {
  public:
    LinuxBannerPanel(StackingGuard& guard, PanelDamage& damage)
        : guard_(guard)
        , damage_(damage)
        , window_(guard, damage) {
        QObject::connect(&animation_, &QVariantAnimation::valueChanged, &window_,
                         [this](const QVariant& value) { advance(value.toDouble()); });
        QObject::connect(&Compositing::instance(), &Compositing::changed, &window_,
                         [this] { followDesktop(); });
        QObject::connect(window_.windowHandle(), &QWindow::screenChanged, &window_,
                         [this] { followDesktop(); });
        window_.setRescaled([this] { followDesktop(); });
        animation_.setStartValue(0.0);
        animation_.setEndValue(1.0);
    }

    LinuxBannerPanel(const LinuxBannerPanel&) = delete;
    LinuxBannerPanel& operator=(const LinuxBannerPanel&) = delete;
    ~LinuxBannerPanel() override { guard_.release(window_); }

    void setContent(std::unique_ptr<PanelContent> view, QSize size) override {
        requireMainThread();
        window_.setCard(std::move(view), size);
        place();
        followDesktop();
    }

    [[nodiscard]] QSize size() const override {
        return window_.card() != nullptr ? window_.card()->size() : QSize();
    }

    void setOrigin(QPoint origin) override {
        requireMainThread();
        if (origin != origin_) damage_.reportAll();
        origin_ = origin;
        place();
        followDesktop();
    }

    void fadeIn(std::chrono::milliseconds duration, int slide) override {
        requireMainThread();
        followDesktop();
        begin({window_.isBlended() ? 0.0 : 1.0, -slide}, {1.0, 0}, duration);
        advance(0);
        window_.show();
        guard_.raise(window_);
        animation_.start();
    }

    void fadeOut(std::chrono::milliseconds duration) override {
        requireMainThread();
        if (!window_.isVisible()) return;
        window_.ignoreClicks();
        guard_.release(window_);
        if (!window_.isBlended()) {
            orderOut();
            return;
        }
        begin(state_, {0.0, state_.offset}, duration);
        animation_.start();
    }

    void orderOut() override {
        requireMainThread();
        animation_.stop();
        guard_.release(window_);
        if (window_.isVisible()) damage_.reportAll();
        window_.hide();
        x11::flush();
    }

    void orderFront() override {
        requireMainThread();
        if (window_.isVisible()) guard_.raise(window_);
    }

  private:
    struct State {
        double opacity = 1;
        int offset = 0;
    };

    void begin(State from, State to, std::chrono::milliseconds duration) {
        // Otherwise the old animation's progress would be emitted once more, with the new one's duration.
        const QSignalBlocker blocker(animation_);
        animation_.stop();
        animation_.setDuration(static_cast<int>(duration.count()));
        animation_.setCurrentTime(0);
        from_ = from;
        to_ = to;
    }

    void followDesktop() {
        if (!window_.followDesktop()) return;
        place();
        window_.resizeNatively();
    }

    void advance(double progress) {
        static const QEasingCurve opacityCurve(QEasingCurve::OutQuad);
        static const QEasingCurve slideCurve(QEasingCurve::OutCubic);
        state_.opacity =
            from_.opacity + (to_.opacity - from_.opacity) * opacityCurve.valueForProgress(progress);
        state_.offset =
            from_.offset + qRound((to_.offset - from_.offset) * slideCurve.valueForProgress(progress));
        damage_.reportAll();
        if (window_.isBlended()) window_.setWindowOpacity(state_.opacity);
        place();
    }

    void place() {
        const QMargins margins = window_.margins();
        const bool hasMoved = window_.moveTo(origin_ - QPoint(margins.left(), margins.top()), state_.offset);
        if (hasMoved && window_.isVisible()) guard_.noteMove();
    }

    StackingGuard& guard_;
    PanelDamage& damage_;
    PanelWindow window_;
    QVariantAnimation animation_;
    QPoint origin_;
    State from_;
    State to_;
    State state_;
};

} // namespace

LinuxBannerPanels::LinuxBannerPanels(PanelDamage& damage)
    : damage_(damage) {
    QObject::connect(&Compositing::instance(), &Compositing::changed, &guard_,
                     [this] { followCompositor(); });
    QObject::connect(&guard_, &StackingGuard::secondPassed, &guard_, [this] { damage_.reportAll(); });
    followCompositor();
}

void LinuxBannerPanels::followCompositor() {
    damage_.followCompositor();
    guard_.setBeat(damage_.isNeeded() ? StackingGuard::Beat::always : StackingGuard::Beat::asNeeded);
}

std::unique_ptr<BannerPanel> LinuxBannerPanels::make() {
    return std::make_unique<LinuxBannerPanel>(guard_, damage_);
}

} // namespace corvane
