#pragma once

#include <QSize>
#include <QWidget>

class QStackedWidget;

namespace corvane {

class Divider;
class SettingsTabBar;

/// The content of a settings window: a row of tabs above the selected tab's page. Main thread only.
class SettingsPages : public QWidget {
    Q_OBJECT

  public:
    [[nodiscard]] SettingsTabBar& tabs() const { return *tabs_; }

  protected:
    /// `size`: at the ordinary text size.
    SettingsPages(QSize size, QWidget* parent);

    /// Adds a tab with the symbol of this name, and its page, which the view takes ownership of.
    void addPage(const QString& symbol, const QString& label, QWidget* page);

    void paintEvent(QPaintEvent* event) override;

  private:
    void layOut();

    SettingsTabBar* tabs_;
    Divider* divider_;
    QStackedWidget* pages_;
};

} // namespace corvane
