#include "Settings/SettingsPages.h"

#include "Controls/Divider.h"
#include "Settings/SettingsTabBar.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QAccessible>
#include <QPainter>
#include <QStackedWidget>

namespace corvane {

namespace {

constexpr int dividerHeight = 1;

} // namespace

SettingsPages::SettingsPages(QSize size, QWidget* parent)
    : QWidget(parent)
    , tabs_(new SettingsTabBar(this))
    , divider_(new Divider(Divider::Backdrop::background, this))
    , pages_(new QStackedWidget(this)) {
    setFixedSize(scaled(size));
    // Below the tabs, whose underline covers it.
    divider_->lower();
    connect(tabs_, &QTabBar::currentChanged, pages_, &QStackedWidget::setCurrentIndex);
    connect(tabs_, &QTabBar::currentChanged, tabs_, [this] {
        // The tab bar's accessible name is that of the selected tab.
        QAccessibleEvent event(tabs_, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    });
}

void SettingsPages::addPage(const QString& symbol, const QString& label, QWidget* page) {
    // Before the tab: adding the first one selects it and shows its page.
    pages_->addWidget(page);
    tabs_->addSymbolTab(symbol, label);
    layOut();
}

void SettingsPages::layOut() {
    const QSize tabs = tabs_->sizeHint();
    tabs_->setGeometry((width() - tabs.width()) / 2, 0, tabs.width(), tabs.height());
    divider_->setGeometry(0, tabs.height() - dividerHeight, width(), dividerHeight);
    pages_->setGeometry(0, tabs.height(), width(), height() - tabs.height());
}

void SettingsPages::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), Tokens::background.color(Tokens::look(palette())));
}

} // namespace corvane
