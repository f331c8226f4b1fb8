#pragma once

#include <QTabBar>

namespace corvane {

/// The row of tabs at the top of the settings: a symbol and a label each, the selected one underlined.
class SettingsTabBar : public QTabBar {
    Q_OBJECT

  public:
    explicit SettingsTabBar(QWidget* parent);

    /// Adds a tab with the symbol of this name.
    void addSymbolTab(const QString& symbol, const QString& label);

  protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace corvane
