#pragma once

#include <QColor>
#include <QFont>

namespace corvane {

struct Look;

/// How the button of a view's main action looks in each of its states: a filled shape with a semibold label.
struct PrimaryButtonStyle {
    static constexpr QFont::Weight weight = QFont::DemiBold;

    bool isEnabled = true;
    bool isHovered = false;
    bool isPressed = false;

    [[nodiscard]] QColor fill(const Look& look) const;
    /// Of the label and its symbol.
    [[nodiscard]] static QColor ink(const Look& look);
    /// Of the whole button: 0.45 while disabled, else 0.8 while pressed, else 1.
    [[nodiscard]] double opacity() const;
};

} // namespace corvane
