#pragma once

#include <QObject>
#include <QRect>

#include <functional>
#include <vector>

class QWidget;

namespace corvane {

/// A window of the application that is open, and where it is on the desktop.
struct OpenPopup {
    QWidget* window = nullptr; ///< its margins hold no content
    QRect place;
};

/// Keeps account of the application's own menus and lists that are open, of all its windows of the pop-up
/// type, and of those windows that are added. Main thread only.
class PopupWatch : public QObject {
    Q_OBJECT

  public:
    PopupWatch();

    /// Watches `window` as well, which is at `place` as long as it is open.
    void add(QWidget& window, std::function<QRect()> place);

    [[nodiscard]] std::vector<OpenPopup> open() const;

  Q_SIGNALS:
    /// One of them opens, has closed, or has got another place or size.
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
