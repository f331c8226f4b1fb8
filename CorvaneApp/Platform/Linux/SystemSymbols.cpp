#include "Platform/SystemSymbols.h"

namespace corvane::systemsymbols {

bool draw(QImage& /*image*/, const QString& /*name*/, const QRectF& /*box*/) {
    return false;
}

} // namespace corvane::systemsymbols
