#pragma once

#include "Style/Tokens.h"

#include <QLabel>

class QTextLayout;

namespace corvane {

/// The colour of a text.
enum class TextColor { onSurface, secondary, secondaryOnBackground };

/// A text that wraps at its width, on lines of a fixed height. A text that fits on one line keeps its font's
/// own height; lines grow for a taller script. Never truncates: make room for `heightForWidth`.
class Paragraph : public QLabel {
    Q_OBJECT

  public:
    struct Style {
        QFont font;
        /// From the top of one line to that of the next, in pixels; 0 for the font's own.
        int lineHeight = 0;
        TextColor color = TextColor::onSurface;
        /// `AlignLeading` follows the layout's direction.
        Qt::Alignment alignment = Qt::AlignLeading;
    };

    Paragraph(const QString& text, Style style, QWidget* parent);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

    /// The width of the text on a single line, rounded up; of its widest line if it has line breaks.
    [[nodiscard]] int naturalWidth() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// Lays the lines out in `layout`; returns their total height, rounded up.
    [[nodiscard]] int layOut(QTextLayout& layout, int width) const;

    Style style_;
};

} // namespace corvane
