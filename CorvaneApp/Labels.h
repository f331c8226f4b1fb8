#pragma once

#include <QLabel>

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
};

} // namespace corvane
