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

/// A borderless floating panel of AppKit's that carries one Qt view on a card of translucent material. A
/// click in it gives it the keyboard without activating the application. It stands above ordinary windows, on
/// every Space and over full-screen applications. Main thread only; needs Qt's "cocoa" platform.
///
/// It is made by AppKit rather than by Qt: whether clicks activate the application is settled while a panel
/// is initialised, and cannot be changed afterwards.
///
/// Places are those of the upper left corner, in device-independent pixels with y growing downwards. Starts
/// hidden.
class NativePanel {
  public:
    NativePanel();
    NativePanel(const NativePanel&) = delete;
    NativePanel& operator=(const NativePanel&) = delete;
    ~NativePanel();

    /// Puts `content`, a widget without parent that has had no native window so far, into the panel and shows
    /// it there, with the material below it in the shape of `outline`, and gives the panel `size`. What was
    /// in the panel stays until it is released. The widget remains the caller's.
    void setContent(QWidget& content, QSize size, const QPainterPath& outline);

    /// Gives the panel and its present content another size.
    void resize(QSize size, const QPainterPath& outline);

    /// Hides `content` and takes it out of its panel: it must not be deleted before.
    static void release(QWidget& content);

    /// At once, unless an animation under way says otherwise.
    void setOrigin(QPoint origin);

    void setOpacity(double opacity);

    /// Whether clicks go through the panel.
    void setIgnoresClicks(bool ignores);

    /// Goes to `opacity`, and to `origin` if given, over `duration`.
    void animate(double opacity, std::optional<QPoint> origin, std::chrono::milliseconds duration);

    /// In front of all windows of its level, without the keyboard.
    void orderFront();

    /// The same, with the keyboard; the application that is active stays active.
    void orderFrontWithKeyboard();

    void orderOut();

    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] bool hasKeyboard() const;

    /// Called when the keyboard has come or gone.
    void setKeyboardHandler(std::function<void()> handler);

    /// The panel as the system knows it (an NSPanel), for those who look at it from outside.
    [[nodiscard]] void* handle() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane
