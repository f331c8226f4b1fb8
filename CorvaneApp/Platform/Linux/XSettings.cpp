#include "Platform/Linux/XSettings.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace corvane {

namespace {

constexpr const char* propertyName = "_XSETTINGS_SETTINGS";

std::string selectionName() {
    return "_XSETTINGS_S" + std::to_string(x11::screenNumber());
}

/// Reads the property's numbers and texts one after the other. Returns none past the end.
class Reader {
  public:
    explicit Reader(std::string_view bytes)
        : rest_(bytes) {}

    void setBigEndian(bool isBigEndian) { isBigEndian_ = isBigEndian; }

    std::optional<std::uint32_t> number(std::size_t size) {
        const std::optional<std::string_view> bytes = take(size);
        if (!bytes) return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t place = isBigEndian_ ? i : size - 1 - i;
            value = value << 8 | static_cast<std::uint8_t>((*bytes)[place]);
        }
        return value;
    }

    /// Padded to whole units of 4 bytes; the last text need not be.
    std::optional<std::string_view> text(std::size_t size) {
        const std::optional<std::string_view> bytes = take(size);
        if (bytes) rest_.remove_prefix(std::min(rest_.size(), (4 - size % 4) % 4));
        return bytes;
    }

    std::optional<std::string_view> take(std::size_t size) {
        if (size > rest_.size()) return std::nullopt;
        const std::string_view bytes = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return bytes;
    }

  private:
    std::string_view rest_;
    bool isBigEndian_ = false;
};

enum Type : std::uint32_t { integer = 0, string = 1, color = 2 };

/// Reads one setting into `look`; false if the rest cannot be parsed.
bool readSetting(Reader& reader, XSettingsLook& look) {
    const std::optional<std::uint32_t> type = reader.number(1);
    reader.take(1);
    const std::optional<std::uint32_t> nameSize = reader.number(2);
    if (!type || !nameSize) return false;
    const std::optional<std::string_view> name = reader.text(*nameSize);
    reader.number(4); // the serial of the last change
    if (!name) return false;
    if (*type == integer) {
        const std::optional<std::uint32_t> value = reader.number(4);
        if (value && name == "Gtk/EnableAnimations") look.animations = *value != 0;
        return value.has_value();
    }
    if (*type == string) {
        const std::optional<std::uint32_t> size = reader.number(4);
        const std::optional<std::string_view> value = size ? reader.text(*size) : std::nullopt;
        if (value && name == "Net/ThemeName") look.themeName = *value;
        return value.has_value();
    }
    constexpr std::size_t colorSize = 8;
    return *type == color && reader.take(colorSize);
}

} // namespace

XSettingsLook XSettings::parsed(std::string_view bytes) {
    constexpr std::uint32_t mostSignificantFirst = 1;
    XSettingsLook look;
    Reader reader(bytes);
    const std::optional<std::uint32_t> order = reader.number(1);
    if (!order) return look;
    reader.setBigEndian(*order == mostSignificantFirst);
    reader.take(3);
    reader.number(4); // the serial of this state
    const std::uint32_t count = reader.number(4).value_or(0);
    for (std::uint32_t i = 0; i < count && readSetting(reader, look); ++i) {
    }
    return look;
}

XSettings::XSettings() {
    connect(&XEvents::instance(), &XEvents::propertyChanged, this,
            [this, settings = x11::atom(propertyName)](xcb_atom_t name) {
                if (name == settings) read();
            });
    connect(&XEvents::instance(), &XEvents::messageReceived, this,
            [this, manager = x11::atom("MANAGER"),
             settings = x11::atom(selectionName())](xcb_atom_t type, xcb_atom_t selection) {
                if (type == manager && selection == settings) findManager();
            });
    findManager();
}

void XSettings::findManager() {
    manager_ = x11::selectionOwner(selectionName());
    if (manager_ == XCB_WINDOW_NONE) return;
    x11::watchProperties(manager_);
    read();
}

void XSettings::read() {
    const std::string bytes = x11::text(manager_, propertyName);
    // The settings of a manager that has exited are kept, as its desktop's programs keep them.
    if (bytes.empty()) return;
    XSettingsLook look = parsed(bytes);
    if (look == look_) return;
    look_ = std::move(look);
    Q_EMIT changed();
}

} // namespace corvane
