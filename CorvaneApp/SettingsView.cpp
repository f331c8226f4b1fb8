#include "SettingsView.h"

#include "AppModel.h"
#include "Divider.h"
#include "FocusRing.h"
#include "Fonts.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QAccessible>
#include <QPainter>
#include <QStackedWidget>
#include <QStyle>
#include <QWheelEvent>

namespace corvane {

namespace {

constexpr int tabHeight = 44;
constexpr int dividerHeight = 1;
constexpr int symbolSide = 18;
constexpr int symbolGap = 8;
constexpr int labelSize = 13;
constexpr int underlineHeight = 2;
// From the underline's end to the tab's content, and from the tab's edge to the underline. Half of the space
// between two tabs belongs to each.
constexpr int contentInset = 4;
constexpr int underlineInset = 16;
constexpr int tabInset = underlineInset + contentInset;

constexpr QMargins ringMargins{-8, -4, -8, -4};
constexpr qreal ringRadius = 8;

QFont labelFont(bool isChosen) {
    return fonts::system(labelSize, isChosen ? QFont::DemiBold : QFont::Medium);
}

} // namespace

// SettingsTabBar

SettingsTabBar::SettingsTabBar(QWidget* parent)
    : QTabBar(parent) {
    setExpanding(false);
    setDrawBase(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setFocusPolicy(Qt::TabFocus);
    setFont(labelFont(true));
    FocusRing::install(*this, ringMargins, ringRadius);
}

void SettingsTabBar::addSymbolTab(const QString& symbol, const QString& label) {
    setTabData(addTab(label), symbol);
}

QSize SettingsTabBar::tabSizeHint(int index) const {
    // The widest that the label gets, so that nothing moves when it is chosen.
    const int text = QFontMetrics(labelFont(true)).horizontalAdvance(tabText(index));
    return {2 * tabInset + symbolSide + symbolGap + text, tabHeight + dividerHeight};
}

QSize SettingsTabBar::minimumTabSizeHint(int index) const {
    return tabSizeHint(index);
}

void SettingsTabBar::paintEvent(QPaintEvent* /*event*/) {
    const ColorScheme scheme = Tokens::scheme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < count(); ++i) {
        const bool isChosen = i == currentIndex();
        const QRect tab = tabRect(i);
        const auto mirrored = [&](int left, int top, int width, int height) {
            return QStyle::visualRect(layoutDirection(), tab, QRect(tab.left() + left, top, width, height));
        };
        const QColor primary = Tokens::primary.color(scheme);
        const QColor secondary = Tokens::textSecondaryOnBackground(scheme);
        symbols::paint(painter, tabData(i).toString(),
                       mirrored(tabInset, (tabHeight - symbolSide) / 2, symbolSide, symbolSide),
                       isChosen ? primary : secondary);
        const int textStart = tabInset + symbolSide + symbolGap;
        painter.setFont(labelFont(isChosen));
        painter.setPen(isChosen ? Tokens::onSurface.color(scheme) : secondary);
        const Qt::Alignment leading =
            QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute;
        painter.drawText(mirrored(textStart, 0, tab.width() - textStart - tabInset, tabHeight),
                         static_cast<int>(leading | Qt::AlignVCenter) | Qt::TextSingleLine, tabText(i));
        if (isChosen) {
            const int top = tabHeight + dividerHeight - underlineHeight;
            painter.setPen(Qt::NoPen);
            painter.setBrush(primary);
            painter.drawRoundedRect(
                mirrored(underlineInset, top, tab.width() - 2 * underlineInset, underlineHeight), 1, 1);
        }
    }
}

void SettingsTabBar::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

// SettingsView

SettingsView::SettingsView(AppModel& model, FileBrowser& fileBrowser, const ReduceMotion& reduceMotion,
                           const links::Opener& openLink, QWidget* parent)
    : QWidget(parent)
    , tabs_(new SettingsTabBar(this))
    , divider_(new Divider(Divider::Backdrop::background, this))
    , pages_(new QStackedWidget(this)) {
    setFixedSize(contentSize);
    tabs_->addSymbolTab(QStringLiteral("terminal"), tr("Agents"));
    tabs_->addSymbolTab(QStringLiteral("bell"), tr("Alerts"));
    tabs_->addSymbolTab(QStringLiteral("info.circle"), tr("About"));
    pages_->addWidget(new AgentsTab(model, fileBrowser, pages_));
    pages_->addWidget(new AlertsTab(model, reduceMotion, pages_));
    pages_->addWidget(new AboutTab(openLink, pages_));
    connect(tabs_, &QTabBar::currentChanged, pages_, &QStackedWidget::setCurrentIndex);
    connect(tabs_, &QTabBar::currentChanged, tabs_, [this] {
        // To assistive technology the row of tabs is called what the chosen tab is.
        QAccessibleEvent event(tabs_, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    });

    const QSize tabs = tabs_->sizeHint();
    tabs_->setGeometry((width() - tabs.width()) / 2, 0, tabs.width(), tabHeight + dividerHeight);
    // Below the tabs, whose underline covers it.
    divider_->setGeometry(0, tabHeight, width(), dividerHeight);
    divider_->lower();
    const int top = tabHeight + dividerHeight;
    pages_->setGeometry(0, top, width(), height() - top);
}

void SettingsView::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), Tokens::background.color(Tokens::scheme(palette())));
}

} // namespace corvane
