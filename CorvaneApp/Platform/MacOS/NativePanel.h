#pragma once

#include <QPainterPath>
#include <QPoint>
#include <QSize>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace corvane {

/// A borderless floating NSPanel that hosts one Qt view on a card of translucent material. A click in it
/// gives it the keyboard focus without activating the application. It floats above ordinary windows, on every
/// Space and over full-screen applications. Main thread only; needs Qt's "cocoa" platform.
///
/// It is created by AppKit rather than by Qt: whether clicks activate the application is fixed when a panel
/// is initialised, and cannot be changed afterwards.
///
/// Positions are those of the upper left corner, in device-independent pixels with y growing downwards.
/// Initially hidden.
class NativePanel {
  public:
    NativePanel();
    NativePanel(const NativePanel&) = delete;
    NativePanel& operator=(const NativePanel&) = delete;
    ~NativePanel();

    /// Puts `content`, a widget that has no parent and has not had a native window, into the panel and shows
    /// it there, with the material below it in the shape of `outline`, and gives the panel `size`. Previous
    /// content stays until it is released. The caller keeps ownership of the widget.
    void setContent(QWidget& content, QSize size, const QPainterPath& outline);

    /// Resizes the panel and its current content.
    void resize(QSize size, const QPainterPath& outline);

    /// Hides `content` and removes it from its panel; it must not be deleted before that.
    static void release(QWidget& content);

    /// Takes effect at once, unless an animation in progress overrides it.
    void setOrigin(QPoint origin);

    void setOpacity(double opacity);

    /// Whether clicks go through the panel.
    void setIgnoresClicks(bool ignores);

    /// Animates to `opacity`, and to `origin` if given, over `duration`.
    void animate(double opacity, std::optional<QPoint> origin, std::chrono::milliseconds duration);

    /// Shows it in front of all windows of its level, without the keyboard focus.
    void orderFront();

    /// The same, with the keyboard focus; the active application stays active.
    void orderFrontWithKeyboard();

    void orderOut();

    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] bool hasKeyboard() const;

    /// `handler` is called when the panel has gained or lost the keyboard focus.
    void setKeyboardHandler(std::function<void()> handler);

    /// The native panel (an NSPanel), for inspection from outside.
    [[nodiscard]] void* handle() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane
