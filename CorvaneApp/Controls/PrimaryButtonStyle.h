#pragma once

#include <QColor>
#include <QFont>

namespace corvane {

struct Look;

/// The look of a view's main button in each of its states: a filled shape with a semibold label.
struct PrimaryButtonStyle {
    static constexpr QFont::Weight weight = QFont::DemiBold;

    bool isEnabled = true;
    bool isHovered = false;
    bool isPressed = false;

    [[nodiscard]] QColor fill(const Look& look) const;
    /// The colour of the label and its symbol.
    [[nodiscard]] static QColor ink(const Look& look);
    /// The opacity of the whole button: 0.45 while disabled, else 0.8 while pressed, else 1.
    [[nodiscard]] double opacity() const;
};

} // namespace corvane
