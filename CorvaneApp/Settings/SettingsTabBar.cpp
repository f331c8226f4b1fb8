#include "Settings/SettingsTabBar.h"

#include "Controls/FocusRing.h"
#include "Controls/Symbols.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QPainter>
#include <QStyle>
#include <QWheelEvent>

namespace corvane {

namespace {

constexpr Scaled tabHeight{44};
constexpr int dividerHeight = 1;
constexpr Scaled symbolSide{18};
constexpr Scaled symbolGap{8};
constexpr Scaled labelSize{13.0};
constexpr int underlineHeight = 2;
// From the tab's edge to the underline. Half of the gap between two tabs belongs to each.
constexpr Scaled underlineInset{16};
constexpr Scaled tabInset{20};

constexpr Scaled ringMargins{QMargins{-8, -4, -8, -4}};
constexpr Scaled ringRadius{8.0};

QFont labelFont(bool isChosen) {
    return fonts::system(labelSize, isChosen ? QFont::DemiBold : QFont::Medium);
}

} // namespace

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
    // The width of the selected label, the larger one, so that nothing moves on selection.
    const int text = QFontMetrics(labelFont(true)).horizontalAdvance(tabText(index));
    return {2 * tabInset + symbolSide + symbolGap + text, tabHeight + dividerHeight};
}

QSize SettingsTabBar::minimumTabSizeHint(int index) const {
    return tabSizeHint(index);
}

void SettingsTabBar::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < count(); ++i) {
        const bool isChosen = i == currentIndex();
        const QRect tab = tabRect(i);
        const auto mirrored = [&](int left, int top, int width, int height) {
            return QStyle::visualRect(layoutDirection(), tab, QRect(tab.left() + left, top, width, height));
        };
        const QColor primary = Tokens::primary.color(look);
        const QColor secondary = Tokens::textSecondaryOnBackground(look);
        symbols::paint(painter, tabData(i).toString(),
                       mirrored(tabInset, (tabHeight - symbolSide) / 2, symbolSide, symbolSide),
                       isChosen ? primary : secondary);
        const int textStart = tabInset + symbolSide + symbolGap;
        painter.setFont(labelFont(isChosen));
        painter.setPen(isChosen ? Tokens::onSurface.color(look) : secondary);
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

} // namespace corvane
