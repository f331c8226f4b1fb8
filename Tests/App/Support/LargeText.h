#pragma once

#include "Style/TextScale.h"

namespace corvane::test {

/// During its lifetime, views are created for this text scale.
class LargeText {
  public:
    explicit LargeText(double factor) { textscale::setFactor(factor); }
    LargeText(const LargeText&) = delete;
    LargeText& operator=(const LargeText&) = delete;
    ~LargeText() { textscale::setFactor(1); }
};

} // namespace corvane::test
