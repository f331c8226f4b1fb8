#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace corvane {
class SystemSymbols;
}

/// The application's symbols, tinted in one colour: the system's own where it has them, else ours, drawn on a
/// 24-unit grid with one stroke width.
namespace corvane::symbols {

/// Paints the symbol `name` (a file name in Resources/Symbols, such as "terminal") into `box`, crisp at the
/// painter's scale. An unknown name paints nothing.
void paint(QPainter& painter, const QString& name, const QRectF& box, const QColor& color);

/// While it exists, symbols are `system`'s where it has them. Without a scope, all are the application's own.
/// Scopes may be nested.
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
