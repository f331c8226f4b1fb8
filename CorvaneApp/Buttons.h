#pragma once

#include <QAbstractButton>
#include <QMargins>
#include <QPainterPath>

namespace corvane {

/// The filled button of a view's main action: a pill with a symbol and a label. Its whole shape takes clicks,
/// and nothing outside of it does.
class PrimaryButton : public QAbstractButton {
    Q_OBJECT

  public:
    /// `symbol` may be empty.
    PrimaryButton(const QString& text, QString symbol, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

    /// 0.45 while disabled, else 0.8 while pressed, else 1.
    [[nodiscard]] double opacity() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override;

  private:
    [[nodiscard]] QPainterPath shape() const;
    void paintContent(QPainter& painter);

    QString symbol_;
};

/// A button that is only its text or its symbol, in the secondary colour, on a faint pill while the pointer
/// is over it. Takes clicks in a margin around what it draws: lay out `contentRect`, not the widget.
class PlainButton : public QAbstractButton {
    Q_OBJECT

  public:
    /// A text of this size, in pixels.
    static PlainButton* withText(const QString& text, int pixelSize, QWidget* parent);

    /// A symbol in a square of this side. `name` is what assistive technology calls it.
    static PlainButton* withSymbol(const QString& symbol, int side, const QString& name, QWidget* parent);

    /// The size of what is drawn.
    [[nodiscard]] QSize contentSize() const;

    /// Puts the drawn part at `rect`, which has the content's size.
    void setContentRect(const QRect& rect);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    PlainButton(QString symbol, int side, QMargins clickMargins, QWidget* parent);

    QString symbol_;
    int side_;
    QMargins clickMargins_;
};

} // namespace corvane
