#pragma once

#include <QFont>

#include <vector>

namespace corvane {

class LineLabel;

/// Narrows a line that is too long for its place before it is cut. A line that fits in none of the fonts is
/// cut in the first one.
class LineFit {
  public:
    /// `fonts`, at least one, from the preferred one to the narrowest. The label must outlive this.
    LineFit(LineLabel& label, std::vector<QFont> fonts);

    /// Whether the whole line fits into this width in one of the fonts.
    [[nodiscard]] bool canFit(int width) const { return fitting(width) != nullptr; }

    /// Sets the label's font for this width.
    void apply(int width);

  private:
    /// The first font that fits; null if none does.
    [[nodiscard]] const QFont* fitting(int width) const;

    LineLabel* label_;
    std::vector<QFont> fonts_;
};

} // namespace corvane
