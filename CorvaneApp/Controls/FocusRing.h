#pragma once

#include <QMargins>
#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

namespace corvane {

/// The ring around a control that has the keyboard focus. It appears when the focus arrives by Tab, an arrow
/// key or a shortcut, disappears at a click anywhere in the application, and reappears at the next key press.
/// Main thread only; owned by its control.
///
/// The ring is a separate widget beside the control, so that it may extend outside of it without affecting
/// the layout. It takes no clicks and is invisible to assistive technology.
class FocusRing : public QObject {
    Q_OBJECT

  public:
    enum class Shape { continuousCorners, pill };

    static constexpr int width = 2;
    /// How far the ring's outer edge is outside of a filled or bordered control: a gap, then the ring.
    [[nodiscard]] static int distance();

    /// Gives `control` a ring. `outset`: how far its outer edge is outside of the control's rectangle, on
    /// each side; negative where it is inside. `radius` is that of the outer edge's corners; a pill ignores
    /// it.
    static FocusRing* install(QWidget& control, QMargins outset, qreal radius,
                              Shape shape = Shape::continuousCorners);

    ~FocusRing() override;

    [[nodiscard]] bool isShown() const;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    FocusRing(QWidget& control, QMargins outset, qreal radius, Shape shape);
    void show();
    void hide();
    void follow();

    QWidget& control_;
    QMargins outset_;
    qreal radius_;
    Shape shape_;
    QPointer<QFocusFrame> frame_;
};

} // namespace corvane
