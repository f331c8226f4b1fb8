#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace corvane {

/// A single line of text in one of the application's colours. `text()`, and with it the accessible name, is
/// always the whole text; a tool tip shows it if it is cut. The text is read in the direction of its first
/// strong letter and begins at the layout's leading edge. Changes are not reported to assistive technology,
/// which queries the text: a line that changes each second would otherwise chatter.
class LineLabel : public QWidget {
    Q_OBJECT

  public:
    enum class Emphasis { normal, secondary };
    enum class Truncation { none, middle };
    /// The line's role for assistive technology. A screen reader reads the words in a notification along with
    /// it, but not its clocks.
    enum class Content { words, clock };

    LineLabel(const QString& text, const QFont& font, Emphasis emphasis, Truncation truncation,
              QWidget* parent, Content content = Content::words);

    [[nodiscard]] const QString& text() const { return text_; }
    /// `drawn`, unless null, is drawn in place of `foreign::line(text)`.
    void setText(const QString& text, const QString& drawn = {});
    [[nodiscard]] Content content() const { return content_; }

    /// Makes the label paint its own opaque backdrop, so that a change of its text repaints nothing else.
    /// `color` is called at every paint.
    void setBackdrop(std::function<QColor()> color);

    /// The text as it is drawn if all of it fits.
    [[nodiscard]] const QString& line() const { return line_; }

    /// The text as it is drawn at the current width, and whether it is cut.
    [[nodiscard]] QString shownText() const;
    [[nodiscard]] bool isCut() const;

    /// The font's own height. A text that may be truncated asks for no width, so that a very long one costs
    /// nothing.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString text_;
    QString line_;
    Emphasis emphasis_;
    Truncation truncation_;
    Content content_;
    std::function<QColor()> backdrop_;
    // What was drawn last, cached since eliding a long message takes time.
    mutable QString shown_;
    mutable int shownWidth_ = -1;
};

} // namespace corvane
