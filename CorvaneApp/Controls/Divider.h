#pragma once

#include <QWidget>

namespace corvane {

/// A thin horizontal line between parts of a view, one pixel high and of any width.
class Divider : public QWidget {
    Q_OBJECT

  public:
    /// What the line is drawn on.
    enum class Backdrop { surface, background };

    Divider(Backdrop backdrop, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Backdrop backdrop_;
};

} // namespace corvane
