#pragma once

#include <QLabel>

#include <functional>

namespace corvane {

/// A single line of text in one of the application's colours. `text()`, and with it the accessible name, is
/// always the whole text.
class LineLabel : public QLabel {
    Q_OBJECT

  public:
    enum class Emphasis { normal, secondary };
    enum class Truncation { none, middle };

    LineLabel(const QString& text, const QFont& font, Emphasis emphasis, Truncation truncation,
              QWidget* parent);

    /// Lets the label paint its own backdrop in place of what is there, so that a change of its text repaints
    /// nothing but itself. `color` is asked at every paint.
    void setBackdrop(std::function<QColor()> color);

    /// The text as it is drawn at the present width.
    [[nodiscard]] QString shownText() const;

    /// The font's own height. A text that may be cut asks for no width, so that a very long one costs
    /// nothing.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Emphasis emphasis_;
    Truncation truncation_;
    std::function<QColor()> backdrop_;
};

} // namespace corvane
