#pragma once

#include <QTextEdit>

namespace corvane {

/// A message about something that went wrong: wraps also inside of long paths, and can be selected and
/// copied. Scrolls when it is given less than its height.
class ErrorText : public QTextEdit {
    Q_OBJECT

  public:
    explicit ErrorText(QWidget* parent);

    /// Shows the message, and tells assistive technology where the user sees it; an empty one hides the
    /// widget.
    void setMessage(const QString& message);

    /// As it was given: what is shown has other line ends and spaces.
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
