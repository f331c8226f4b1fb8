// Plays through a fake libcanberra, which this program defines in place of the shared library: the sanitizers
// see what the two threads share, and no sound server is needed.

#include "Platform/Linux/Sounds.h"
#include "Sessions/AlertPreferences.h"

#include <gtest/gtest.h>

#include <canberra.h>
#include <condition_variable>
#include <cstdarg>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <thread>
#include <unistd.h>
#include <vector>

struct ca_context {};
struct ca_proplist {
    std::string event;
};

namespace corvane {
namespace {

class FakeServer {
  public:
    void reset() {
        const std::lock_guard lock(mutex_);
        played_.clear();
        callers_.clear();
        isHung_ = false;
        contexts_ = 0;
        playResult_ = CA_SUCCESS;
    }

    void hang() {
        const std::lock_guard lock(mutex_);
        isHung_ = true;
    }
    void answer() {
        const std::lock_guard lock(mutex_);
        isHung_ = false;
        changed_.notify_all();
    }
    void setPlayResult(int result) {
        const std::lock_guard lock(mutex_);
        playResult_ = result;
    }

    void open() {
        std::unique_lock lock(mutex_);
        ++contexts_;
        callers_.push_back(std::this_thread::get_id());
        changed_.notify_all();
        changed_.wait(lock, [this] { return !isHung_; });
    }
    void close() {
        const std::lock_guard lock(mutex_);
        --contexts_;
        changed_.notify_all();
    }
    int play(const std::string& name) {
        const std::lock_guard lock(mutex_);
        callers_.push_back(std::this_thread::get_id());
        played_.push_back(name);
        changed_.notify_all();
        return playResult_;
    }

    std::vector<std::string> waitForPlayed(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return played_.size() >= count; });
        return played_;
    }
    void waitForContexts(int count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return contexts_ == count; });
    }
    std::vector<std::thread::id> callers() {
        const std::lock_guard lock(mutex_);
        return callers_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> played_;
    std::vector<std::thread::id> callers_;
    bool isHung_ = false;
    int contexts_ = 0;
    int playResult_ = CA_SUCCESS;
};

FakeServer& server() {
    static FakeServer instance;
    return instance;
}

} // namespace
} // namespace corvane

extern "C" {

int ca_context_create(ca_context** context) {
    *context = new ca_context;
    return CA_SUCCESS;
}
int ca_context_change_props(ca_context* /*context*/, ...) {
    return CA_SUCCESS;
}
int ca_context_open(ca_context* /*context*/) {
    corvane::server().open();
    return CA_SUCCESS;
}
int ca_context_destroy(ca_context* context) {
    delete context;
    corvane::server().close();
    return CA_SUCCESS;
}
int ca_context_play_full(ca_context* /*context*/, std::uint32_t /*id*/, ca_proplist* properties,
                         ca_finish_callback_t /*callback*/, void* /*data*/) {
    return corvane::server().play(properties->event);
}
int ca_proplist_create(ca_proplist** properties) {
    *properties = new ca_proplist;
    return CA_SUCCESS;
}
int ca_proplist_destroy(ca_proplist* properties) {
    delete properties;
    return CA_SUCCESS;
}
int ca_proplist_sets(ca_proplist* properties, const char* key, const char* value) {
    if (std::string(key) == CA_PROP_EVENT_DESCRIPTION) properties->event = value;
    return CA_SUCCESS;
}

} // extern "C"

namespace corvane {
namespace {

class SoundThread : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        // ThreadSanitizer starts a thread of its own with the first one, and keeps it.
        pid_t first = 0;
        std::thread([&first] { first = gettid(); }).join();
        while (std::filesystem::exists("/proc/self/task/" + std::to_string(first)))
            std::this_thread::yield();
        threadsBefore = threadCount();
    }

    void SetUp() override { server().reset(); }

    /// On a busy machine a thread may be left behind, which would still count for the next test.
    void TearDown() override {
        while (threadCount() > threadsBefore)
            std::this_thread::yield();
    }

    static std::vector<std::string> allNames() {
        const auto& names = AlertPreferences::soundChoices;
        return {names.begin(), names.end()};
    }

  private:
    static std::ptrdiff_t threadCount() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    }

    static std::ptrdiff_t threadsBefore;
};

std::ptrdiff_t SoundThread::threadsBefore = 0;

TEST_F(SoundThread, playsInOrderInOneOtherThread) {
    LinuxSounds sounds("sounds");
    // No more than two of them may sound at once.
    const std::vector<std::string> two{allNames()[0], allNames()[1]};
    for (const std::string& name : two)
        sounds.play(name);
    EXPECT_EQ(server().waitForPlayed(two.size()), two);
    const std::vector<std::thread::id> callers = server().callers();
    for (const std::thread::id caller : callers) {
        EXPECT_EQ(caller, callers.front());
        EXPECT_NE(caller, std::this_thread::get_id());
    }
}

TEST_F(SoundThread, connectsOnceAndClosesAtTheEnd) {
    {
        LinuxSounds sounds("sounds");
        sounds.play(allNames()[0]);
        server().waitForPlayed(1);
        sounds.play(allNames()[1]);
        server().waitForPlayed(2);
        server().waitForContexts(1);
    }
    server().waitForContexts(0);
}

TEST_F(SoundThread, reconnectsAfterAnError) {
    LinuxSounds sounds("sounds");
    sounds.play(allNames()[0]);
    server().waitForPlayed(1);
    server().setPlayResult(CA_ERROR_DISCONNECTED);
    sounds.play(allNames()[1]);
    const std::vector<std::string> played = server().waitForPlayed(3);
    EXPECT_EQ(played[1], allNames()[1]);
    EXPECT_EQ(played[2], allNames()[1]) << "tried once more on the new connection";
}

TEST_F(SoundThread, aThreadWhoseServerDoesNotReplyIsAbandonedAndEndsByItself) {
    server().hang();
    {
        LinuxSounds sounds("sounds");
        sounds.play(allNames()[0]);
        server().waitForContexts(1);
    }
    server().answer();
    server().waitForContexts(0);
}

TEST_F(SoundThread, mayEndAtAnyMoment) {
    for (int i = 0; i < 200; ++i) {
        LinuxSounds sounds("sounds");
        for (const std::string& name : allNames())
            sounds.play(name);
        if (i % 2 == 0) server().waitForPlayed(1);
    }
    server().waitForContexts(0);
}

TEST_F(SoundThread, withoutASoundThereIsNoThread) {
    {
        LinuxSounds sounds("sounds");
        sounds.play("no such sound");
    }
    EXPECT_TRUE(server().callers().empty());
}

} // namespace
} // namespace corvane
