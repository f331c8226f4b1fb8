#include "Support/TimeZone.h"

#include <cstdlib>
#include <ctime>

namespace corvane::test {

TimeZone::TimeZone(const char* name) {
    if (const char* const before = std::getenv("TZ")) before_ = before;
    setenv("TZ", name, 1);
    tzset();
}

TimeZone::~TimeZone() {
    before_ ? setenv("TZ", before_->c_str(), 1) : unsetenv("TZ");
    tzset();
}

} // namespace corvane::test
