#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The user's stored settings: a flat map from key to value that outlives the process.
///
/// The application implements it on the platform's settings store, the tests in memory. Main thread only.
/// Storing never fails visibly: what cannot be written is lost when the process ends.
class UserDefaults {
  public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// The bytes stored under `key`; none when there are none or the value is of another type.
    [[nodiscard]] virtual std::optional<std::string> data(std::string_view key) const = 0;
    virtual void setData(std::string_view key, std::string_view bytes) = 0;

    /// The boolean stored under `key`; false when there is none or the value is of another type.
    [[nodiscard]] virtual bool boolean(std::string_view key) const = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;
};

} // namespace corvane
