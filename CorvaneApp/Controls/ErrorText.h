#pragma once

#include <QTextEdit>

namespace corvane {

/// An error message: wraps even within long paths, and can be selected and copied. Scrolls if it gets less
/// than its full height.
class ErrorText : public QTextEdit {
    Q_OBJECT

  public:
    explicit ErrorText(QWidget* parent);

    /// Shows the message, and reports it to assistive technology if it is visible; an empty one hides the
    /// widget.
    void setMessage(const QString& message);

    /// The message as it was set; the displayed text has other line ends and spaces.
    [[nodiscard]] const QString& message() const { return message_; }

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void changeEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void layOut();

    QString message_;
};

} // namespace corvane
