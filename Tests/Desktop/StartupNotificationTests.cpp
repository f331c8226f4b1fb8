// The busy pointer that a desktop shows while a program starts: it ends when the window of a second start,
// which belongs to the running process, completes the notification.

#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/XReply.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

/// Hears what programs broadcast about their starts, as a desktop does.
class StartupMessages {
  public:
    explicit StartupMessages(const std::string& display)
        : connection_(xcb_connect(display.c_str(), nullptr)) {
        if (xcb_connection_has_error(connection_) != 0) throw std::runtime_error("no X server");
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &events);
        // Their replies arrive after the server has processed the request above.
        begin_ = atom("_NET_STARTUP_INFO_BEGIN");
        next_ = atom("_NET_STARTUP_INFO");
    }
    StartupMessages(const StartupMessages&) = delete;
    StartupMessages& operator=(const StartupMessages&) = delete;
    ~StartupMessages() { xcb_disconnect(connection_); }

    /// The messages received in full so far.
    const std::vector<std::string>& heard() {
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            constexpr std::uint8_t sentByAClient = 0x80;
            if (event->response_type != (XCB_CLIENT_MESSAGE | sentByAClient)) continue;
            add(*reinterpret_cast<const xcb_client_message_event_t*>(event.get()));
        }
        return heard_;
    }

  private:
    xcb_atom_t atom(std::string_view name) {
        const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
        if (!reply) throw std::runtime_error("the X server has gone");
        return reply->atom;
    }

    void add(const xcb_client_message_event_t& event) {
        if (event.type == begin_)
            piece_.clear();
        else if (event.type != next_)
            return;
        const auto* const end = std::find(std::begin(event.data.data8), std::end(event.data.data8), 0);
        piece_.append(std::begin(event.data.data8), end);
        if (end != std::end(event.data.data8)) heard_.push_back(piece_);
    }

    xcb_connection_t* connection_;
    xcb_atom_t begin_ = XCB_ATOM_NONE;
    xcb_atom_t next_ = XCB_ATOM_NONE;
    std::string piece_;
    std::vector<std::string> heard_;
};

TEST(StartupNotification, theWindowOfASecondStartEndsItsNotification) {
    DesktopSession session("openbox", Compositor::none);
    session.startApplication();
    StartupMessages messages(session.display());
    // The second one's message fills two events, so that its end is in a third.
    for (const char* const id :
         {"panel_TIME77", "host-panel-1234_TIME4567890", R"(a "quoted" \ one_TIME1)"}) {
        const auto second =
            session.run({CORVANE_PROGRAM}, "second", {std::string("DESKTOP_STARTUP_ID=") + id});
        std::string text;
        for (const char character : std::string_view(id)) {
            if (character == '"' || character == '\\') text += '\\';
            text += character;
        }
        const std::string expected = "remove: ID=\"" + text + '"';
        EXPECT_TRUE(waitUntil(20s, [&] {
            const auto& heard = messages.heard();
            return std::find(heard.begin(), heard.end(), expected) != heard.end();
        })) << id;
        // The message may arrive before the window is managed.
        EXPECT_TRUE(waitUntil(20s, [&] { return session.screen().managedWindows("Corvane").size() == 1; }));
        EXPECT_TRUE(second->wait(20s));
    }
}

} // namespace
} // namespace corvane::test
