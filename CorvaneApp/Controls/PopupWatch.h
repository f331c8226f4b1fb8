#pragma once

#include <QObject>
#include <QRect>

#include <functional>
#include <vector>

class QWidget;

namespace corvane {

/// An open window of the application, and its place on the desktop.
struct OpenPopup {
    QWidget* window = nullptr; ///< its margins hold no content
    QRect place;
};

/// Tracks the application's open menus and drop-down lists, that is all its windows of the pop-up type, and
/// the windows that are added. Main thread only.
class PopupWatch : public QObject {
    Q_OBJECT

  public:
    PopupWatch();

    /// Also watches `window`, which is at `place` while it is open.
    void add(QWidget& window, std::function<QRect()> place);

    [[nodiscard]] std::vector<OpenPopup> open() const;

  Q_SIGNALS:
    /// Emitted when one of these windows is opening, has closed, or has changed its position or size.
    void changed();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    struct Added {
        const QObject* window;
        std::function<QRect()> place;
    };
    [[nodiscard]] const Added* added(const QWidget& window) const;

    std::vector<Added> added_;
    std::vector<QWidget*> open_;
};

} // namespace corvane
