// Inspects an X display from outside and prints what is there, for Scripts/demonstration.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/Picture.h"
#include "Desktop/Support/TextLook.h"
#include "Desktop/Support/XObserver.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace corvane::test;
using Arguments = std::vector<std::string>;

constexpr const char* usage = R"(usage: corvane-observer COMMAND
  windows                     the banners on the screen, the highest first: window, kind, card, window's frame
  wait-for [--waiting N] [--done M] [--timeout S]
                              waits until exactly so many banners are on the screen, drawn in full and at their
                              places; prints them, then the seconds that it took
  reads N TITLE SUBTITLE      whether the banner number N, the highest being 1, shows these words; the subtitle
                              may go on after them
  stays-empty --for S         fails as soon as a banner comes within S seconds
  wait-for-desktop [--compositor] [--timeout S]
                              waits for a window manager that responds, and for a compositor
  wait-for-window CLASS [--timeout S]
                              waits until the window manager has a window of this class
  wallpaper                   paints the desktop's background
  record FOLDER AREA          records an area until the standard input ends, 30 times a second, and writes each
                              frame that differs from the previous one as FOLDER/<milliseconds since the first>.png
  screenshot FILE [AREA]      writes what the screen, or an area like 40x20+300+200 of it, shows as a PNG file
  tone AREA                   how light an area is in the mean, from 0 to 255
  ink AREA                    whether the screen shows something there: whether not all is of one colour
Ends with status 0 when what was asked for was seen, 1 when not, 2 when the call was wrong.)";

struct WrongCall : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// "--name value" pairs, or the text "yes" for a name that is followed by another one.
std::map<std::string, std::string> options(const Arguments& arguments, std::size_t from) {
    std::map<std::string, std::string> result;
    for (std::size_t i = from; i < arguments.size(); ++i) {
        if (!arguments[i].starts_with("--")) throw WrongCall("not understood: " + arguments[i]);
        const bool hasValue = i + 1 < arguments.size() && !arguments[i + 1].starts_with("--");
        const std::string key = arguments[i].substr(2);
        result[key] = hasValue ? arguments[++i] : "yes";
    }
    return result;
}

double number(const std::map<std::string, std::string>& options, const std::string& name, double otherwise) {
    const auto found = options.find(name);
    if (found == options.end()) return otherwise;
    char* end = nullptr;
    const double value = std::strtod(found->second.c_str(), &end);
    if (*end != 0 || value < 0) throw WrongCall("--" + name + " needs a number");
    return value;
}

std::chrono::milliseconds milliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

std::string describe(const Rect& rect) {
    return std::to_string(rect.width) + "x" + std::to_string(rect.height) + "+" + std::to_string(rect.x) +
           "+" + std::to_string(rect.y);
}

void print(const std::vector<Banner>& banners) {
    for (const Banner& banner : banners) {
        std::printf("0x%x %s card %s window %s\n", banner.window, name(banner.kind).c_str(),
                    describe(banner.card).c_str(), describe(banner.frame).c_str());
    }
}

int windows(const Arguments& /*arguments*/) {
    print(XObserver().banners());
    return 0;
}

// The part of WIDTHxHEIGHT+LEFT+TOP that is on the screen.
Rect area(const std::string& text, const Rect& screen) {
    Rect rect;
    char times = 0;
    std::istringstream input(text);
    input >> rect.width >> times >> rect.height >> rect.x >> rect.y;
    if (!input || times != 'x' || !input.eof()) throw WrongCall("not an area: " + text);
    const int right = std::min(rect.right(), screen.right());
    const int bottom = std::min(rect.bottom(), screen.bottom());
    rect.x = std::max(rect.x, 0);
    rect.y = std::max(rect.y, 0);
    rect.width = right - rect.x;
    rect.height = bottom - rect.y;
    if (rect.width <= 0 || rect.height <= 0)
        throw std::runtime_error("not seen: " + text + " is not on the screen");
    return rect;
}

int screenshot(const Arguments& arguments) {
    if (arguments.size() != 2 && arguments.size() != 3) throw WrongCall("screenshot needs a file");
    const XObserver x;
    const Rect whole = x.screenArea();
    x.screen(arguments.size() == 3 ? area(arguments[2], whole) : whole).save(arguments[1]);
    return 0;
}

/// Whether the standard input has ended. Waits for that until `end`.
bool inputHasEnded(std::chrono::steady_clock::time_point end) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, static_cast<int>(std::max<std::int64_t>(0, left.count()))) <= 0) return false;
        std::array<char, 64> ignored{};
        if (read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0) return true;
    }
}

int record(const Arguments& arguments) {
    if (arguments.size() != 3) throw WrongCall("record needs a folder and an area");
    constexpr std::chrono::milliseconds interval{33};
    constexpr std::size_t mostFrames =
        400; // all are kept in memory, since writing one takes longer than that
    const XObserver x;
    const Rect rect = area(arguments[2], x.screenArea());
    std::vector<std::pair<std::chrono::milliseconds, Picture>> frames;
    const auto start = std::chrono::steady_clock::now();
    auto next = start;
    do {
        const auto now = std::chrono::steady_clock::now();
        Picture picture = x.screen(rect);
        if (frames.empty() || picture.differences(frames.back().second, 0) > 0) {
            if (frames.size() == mostFrames)
                throw std::runtime_error("the area changes too often to be recorded");
            frames.emplace_back(std::chrono::duration_cast<std::chrono::milliseconds>(now - start),
                                std::move(picture));
        }
        next = std::max(next + interval, now);
    } while (!inputHasEnded(next));
    for (const auto& [time, picture] : frames)
        picture.save(std::filesystem::path(arguments[1]) / (std::to_string(time.count()) + ".png"));
    return 0;
}

int ink(const Arguments& arguments) {
    if (arguments.size() != 2) throw WrongCall("ink needs an area");
    const XObserver x;
    const Picture picture = x.screen(area(arguments[1], x.screenArea()));
    const Color first = picture.at(0, 0);
    if (picture.share({0, 0, picture.width, picture.height}, first, 8) < 1) return 0;
    std::cerr << "not seen: all of " << arguments[1] << " is of one colour\n";
    return 1;
}

int tone(const Arguments& arguments) {
    if (arguments.size() != 2) throw WrongCall("tone needs an area");
    const XObserver x;
    const Picture picture = x.screen(area(arguments[1], x.screenArea()));
    double sum = 0;
    for (const std::uint32_t pixel : picture.pixels) {
        const auto [red, green, blue] = Color{pixel}.channels();
        sum += (red + green + blue) / 3.0;
    }
    std::printf("%.1f\n", sum / static_cast<double>(picture.pixels.size()));
    return 0;
}

int waitFor(const Arguments& arguments) {
    const auto given = options(arguments, 1);
    const auto waiting = static_cast<std::size_t>(number(given, "waiting", 0));
    const auto done = static_cast<std::size_t>(number(given, "done", 0));
    const XObserver x;
    std::optional<std::string> wrong;
    const auto start = std::chrono::steady_clock::now();
    const bool seen = waitUntil(milliseconds(number(given, "timeout", 2)), [&] {
        wrong = screenFault(x, waiting, done);
        return !wrong;
    });
    print(x.banners());
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    std::printf("%.2f\n", elapsed.count());
    if (!seen) std::cerr << "not seen: " << *wrong << '\n';
    return seen ? 0 : 1;
}

int reads(const Arguments& arguments) {
    if (arguments.size() != 4) throw WrongCall("reads needs a banner's number and two texts");
    const XObserver x;
    const std::vector<Banner> banners = x.banners();
    const std::size_t index = std::strtoul(arguments[1].c_str(), nullptr, 10);
    if (index < 1 || index > banners.size()) {
        std::cerr << "not seen: there are only " << banners.size() << " banners\n";
        return 1;
    }
    const Picture screen = x.screen();
    auto fault = wordsFault(screen, banners[index - 1], BannerLine::title, arguments[2]);
    if (!fault) fault = wordsFault(screen, banners[index - 1], BannerLine::subtitle, arguments[3]);
    if (fault) std::cerr << "not seen: " << *fault << '\n';
    return fault ? 1 : 0;
}

int staysEmpty(const Arguments& arguments) {
    const XObserver x;
    const bool came =
        waitUntil(milliseconds(number(options(arguments, 1), "for", 2)), [&] { return x.windowCount() > 0; });
    if (came) {
        print(x.banners());
        std::cerr << "not seen: a window of the application came where none should\n";
    }
    return came ? 1 : 0;
}

int waitForDesktop(const Arguments& arguments) {
    const auto given = options(arguments, 1);
    const bool needsCompositor = given.contains("compositor");
    const std::chrono::milliseconds timeout = milliseconds(number(given, "timeout", 10));
    XObserver x;
    const bool came = waitUntil(
        timeout, [&] { return !x.windowManager().empty() && (!needsCompositor || x.isComposited()); });
    const bool ready = came && x.windowManagerResponds(timeout);
    if (ready) {
        std::cout << x.windowManager() << '\n';
    } else {
        std::cerr << "no window manager" << (needsCompositor ? " with a compositor" : "")
                  << (came ? " responds\n" : " came up\n");
    }
    return ready ? 0 : 1;
}

int waitForWindow(const Arguments& arguments) {
    if (arguments.size() < 2) throw WrongCall("wait-for-window needs a class");
    const XObserver x;
    const bool seen = waitUntil(milliseconds(number(options(arguments, 2), "timeout", 10)),
                                [&] { return !x.managedWindows(arguments[1]).empty(); });
    if (!seen) std::cerr << "no window of the class " << arguments[1] << " came up\n";
    return seen ? 0 : 1;
}

int wallpaper(const Arguments& /*arguments*/) {
    XObserver().paintWallpaper();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const Arguments arguments(argv + 1, argv + argc);
    const std::map<std::string, std::function<int(const Arguments&)>> commands{
        {"windows", windows},
        {"wait-for", waitFor},
        {"reads", reads},
        {"stays-empty", staysEmpty},
        {"wait-for-desktop", waitForDesktop},
        {"wait-for-window", waitForWindow},
        {"wallpaper", wallpaper},
        {"record", record},
        {"screenshot", screenshot},
        {"ink", ink},
        {"tone", tone},
    };
    const auto command = commands.find(arguments.empty() ? std::string() : arguments.front());
    try {
        if (command == commands.end()) throw WrongCall("no such command");
        return command->second(arguments);
    } catch (const WrongCall& error) {
        std::cerr << "corvane-observer: " << error.what() << '\n' << usage << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "corvane-observer: " << error.what() << '\n';
        return 1;
    }
}
