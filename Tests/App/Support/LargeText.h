#pragma once

#include "Style/TextScale.h"

namespace corvane::test {

/// For its lifetime, views are made for text of this factor.
class LargeText {
  public:
    explicit LargeText(double factor) { textscale::setFactor(factor); }
    LargeText(const LargeText&) = delete;
    LargeText& operator=(const LargeText&) = delete;
    ~LargeText() { textscale::setFactor(1); }
};

} // namespace corvane::test
