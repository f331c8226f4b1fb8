#pragma once

#include <QAbstractButton>
#include <QMargins>
#include <QPainterPath>

namespace corvane {

struct PrimaryButtonStyle;

/// The base class of the application's push buttons: Space, Return and Enter press them, and they take the
/// focus only by keyboard, which a ring shows.
class PushButton : public QAbstractButton {
    Q_OBJECT

  public:
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    explicit PushButton(QWidget* parent);

    void keyPressEvent(QKeyEvent* event) override;

    /// Enabled, and under the pointer or pressed.
    [[nodiscard]] bool isHot() const;
};

/// A button 28 pixels high with continuous corners and centred text. Only its shape takes clicks.
class ShapedButton : public PushButton {
    Q_OBJECT

  public:
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    ShapedButton(const QString& text, QFont::Weight weight, QWidget* parent);

    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

    [[nodiscard]] QPainterPath shape() const;
    /// Draws the button at full opacity.
    virtual void paintContent(QPainter& painter) = 0;
    [[nodiscard]] virtual double opacity() const;
    /// The space between the button's edges and its content.
    [[nodiscard]] virtual int padding() const;
    /// The width of what precedes the text.
    [[nodiscard]] virtual int leadingWidth() const { return 0; }
    /// Paints the text in the remaining space.
    void paintText(QPainter& painter, const QColor& color);
};

/// The button of a view's main action, in `PrimaryButtonStyle`: a pill with a symbol and a label.
class PrimaryButton : public ShapedButton {
    Q_OBJECT

  public:
    /// `symbol` may be empty.
    PrimaryButton(const QString& text, QString symbol, QWidget* parent);

    /// Narrows the button to make room beside it. Step 0 is the normal size; further steps shrink the label
    /// and the padding, and `narrowest` drops the symbol.
    static constexpr int narrowest = 3;
    void setNarrowing(int step);

    [[nodiscard]] double opacity() const override;

  protected:
    void paintContent(QPainter& painter) override;
    [[nodiscard]] int padding() const override;
    [[nodiscard]] int leadingWidth() const override;

  private:
    [[nodiscard]] PrimaryButtonStyle buttonStyle() const;
    [[nodiscard]] bool hasSymbol() const;

    QString symbol_;
    int narrowing_ = 0;
};

/// The button of every other action: a thin border on `surface`.
class BorderedButton : public ShapedButton {
    Q_OBJECT

  public:
    BorderedButton(const QString& text, QWidget* parent);

  protected:
    void paintContent(QPainter& painter) override;
};

/// A button without a shape, only its content. Takes clicks in a margin around what it draws: lay out
/// `contentRect`, not the widget.
class BareButton : public PushButton {
    Q_OBJECT

  public:
    /// The size of what is drawn.
    [[nodiscard]] virtual QSize contentSize() const;

    /// The geometry of the drawn part, in the parent's coordinates.
    [[nodiscard]] QRect contentRect() const;
    /// Puts the drawn part at `rect`, which has the content's size.
    void setContentRect(const QRect& rect);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    BareButton(QMargins clickMargins, QWidget* parent);

    [[nodiscard]] const QMargins& clickMargins() const { return clickMargins_; }
    void setClickMargins(const QMargins& margins) { clickMargins_ = margins; }

  private:
    QMargins clickMargins_;
};

/// A text or a symbol, on a faint pill while the pointer is over it.
class PlainButton : public BareButton {
    Q_OBJECT

  public:
    /// The colour of the button in its normal state. A secondary one changes to `onSurface` under the
    /// pointer.
    enum class Ink { secondary, onSurface, primary };

    /// A text of this size, in pixels.
    static PlainButton* withText(const QString& text, qreal pixelSize, QWidget* parent,
                                 Ink ink = Ink::secondary, QFont::Weight weight = QFont::Normal);

    /// A symbol in a square of this side. `name` is its accessible name.
    static PlainButton* withSymbol(const QString& symbol, int side, const QString& name, QWidget* parent);

    [[nodiscard]] QSize contentSize() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    PlainButton(QString symbol, int side, Ink ink, QMargins pillMargins, QWidget* parent);
    void fitClickMargins();

    QString symbol_;
    int side_;
    Ink ink_;
    QMargins pillMargins_; // around what is drawn; the click area may be larger
};

/// A link in the primary colour, underlined under the pointer, and always with high contrast.
class LinkButton : public BareButton {
    Q_OBJECT

  public:
    /// A text of this size, in pixels.
    LinkButton(const QString& text, qreal pixelSize, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corvane
