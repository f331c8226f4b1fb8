#pragma once

#include "Style/Tokens.h"

#include <QLabel>

class QTextLayout;

namespace corvane {

/// What a text is drawn with, beside its font.
enum class TextColor { onSurface, secondary, secondaryOnBackground };

/// A text that wraps at its width, on lines of a fixed height. A text that fits on one line keeps its font's
/// own height; where a script stands higher than the lines, they give way. Never cuts anything: ask
/// `heightForWidth` and make room.
class Paragraph : public QLabel {
    Q_OBJECT

  public:
    struct Style {
        QFont font;
        /// From one line's top to the next one's, in pixels; 0 for the font's own.
        int lineHeight = 0;
        TextColor color = TextColor::onSurface;
        /// `AlignLeading` follows the layout's direction.
        Qt::Alignment alignment = Qt::AlignLeading;
    };

    Paragraph(const QString& text, Style style, QWidget* parent);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

    /// The width of the text on a single line, rounded up; of the widest one where it has line breaks.
    [[nodiscard]] int naturalWidth() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    /// Lays the lines out in `layout`; their height in all, rounded up.
    [[nodiscard]] int lay(QTextLayout& layout, int width) const;

    Style style_;
};

} // namespace corvane
