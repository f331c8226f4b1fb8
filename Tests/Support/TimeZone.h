#pragma once

#include <optional>
#include <string>

namespace corvane::test {

/// Sets the process's time zone for a test, and restores the one before at its end.
///
/// `name` is in POSIX's notation, where zones east of Greenwich are negative: "CET-1CEST,M3.5.0,M10.5.0/3" is
/// central Europe. It needs no time zone database.
class TimeZone {
  public:
    explicit TimeZone(const char* name);
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone();

  private:
    std::optional<std::string> before_;
};

} // namespace corvane::test
