#pragma once

#include "Support/UserDefaults.h"

#include <QSettings>

namespace corvane {

/// User defaults in the platform's settings store, on Linux an INI file in the XDG configuration folder. A
/// store that cannot be read counts as empty. Main thread only.
class SettingsDefaults : public UserDefaults {
  public:
    /// `settings` must outlive this object.
    explicit SettingsDefaults(QSettings& settings);

    [[nodiscard]] std::optional<std::string> data(std::string_view key) const override;
    void setData(std::string_view key, std::string_view bytes) override;
    [[nodiscard]] bool boolean(std::string_view key) const override;
    void setBoolean(std::string_view key, bool value) override;

  private:
    QSettings& settings_;
};

} // namespace corvane
