#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace corvane {
class SystemSymbols;
}

/// The application's symbols, tinted by one colour: the system's own where it has them, else ours, drawn on
/// one grid of 24 with one stroke.
namespace corvane::symbols {

/// Paints the symbol `name` (a file's name in Resources/Symbols, such as "terminal") into `box`, crisp at the
/// painter's scale. An unknown name paints nothing.
void paint(QPainter& painter, const QString& name, const QRectF& box, const QColor& color);

/// While it lives, symbols are `system`'s where it has them. Without one, all of them are ours. Scopes may be
/// nested.
class SystemScope {
  public:
    /// `system` must outlive the scope.
    explicit SystemScope(SystemSymbols& system);
    SystemScope(const SystemScope&) = delete;
    SystemScope& operator=(const SystemScope&) = delete;
    ~SystemScope();

  private:
    SystemSymbols* previous_;
};

} // namespace corvane::symbols
