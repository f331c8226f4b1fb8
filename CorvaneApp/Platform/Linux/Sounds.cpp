#include "Platform/Linux/Sounds.h"

#include "Platform/Linux/SoundQueue.h"
#include "Sessions/AlertPreferences.h"

#include <algorithm>
#include <canberra.h>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <dlfcn.h>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds patienceAtEnd{100};

void dropMessage(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                 const char* /*format*/, ...) {}

/// Without a sound server libcanberra falls back to ALSA, whose library prints several lines to standard
/// error for each sound that it cannot play, because there is no card or another user or program holds it.
/// That is normal for a machine without sound. The messages are suppressed instead of avoiding ALSA where
/// there is no card, since a configuration may lead to a device that is not a card. The library is not
/// linked: libcanberra loads it with its driver, if at all, and may unload it again.
void silenceAlsa() {
    using Handler =
        void (*)(const char* file, int line, const char* function, int error, const char* format, ...);
    using SetHandler = int (*)(Handler handler);
    void* const library = dlopen("libasound.so.2", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) return;
    if (void* const function = dlsym(library, "snd_lib_error_set_handler"); function != nullptr)
        reinterpret_cast<SetHandler>(function)(dropMessage);
    dlclose(library);
}

// Lives in the worker thread.
class Player {
  public:
    Player() = default;
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    ~Player() { close(); }

    void play(const std::filesystem::path& file, const std::string& name) {
        if (context_ != nullptr) {
            const int result = start(file, name);
            // Without its file a sound cannot be played over a new connection either.
            if (result == CA_SUCCESS || result == CA_ERROR_NOTFOUND) return;
            close(); // the server may have been restarted
        }
        if (open()) start(file, name);
    }

  private:
    bool open() {
        if (ca_context_create(&context_) != CA_SUCCESS) {
            context_ = nullptr;
            return false;
        }
        ca_context_change_props(context_, CA_PROP_APPLICATION_NAME, "Corvane", CA_PROP_APPLICATION_ID,
                                "corvane", CA_PROP_APPLICATION_ICON_NAME, "corvane", nullptr);
        if (ca_context_open(context_) == CA_SUCCESS) {
            silenceAlsa();
            return true;
        }
        close();
        return false;
    }

    void close() {
        if (context_ != nullptr) ca_context_destroy(context_);
        context_ = nullptr;
    }

    // Starts playing and returns at once.
    int start(const std::filesystem::path& file, const std::string& name) {
        ca_proplist* properties = nullptr;
        if (ca_proplist_create(&properties) != CA_SUCCESS) return CA_ERROR_OOM;
        ca_proplist_sets(properties, CA_PROP_MEDIA_FILENAME, file.c_str());
        ca_proplist_sets(properties, CA_PROP_MEDIA_ROLE, "event");
        ca_proplist_sets(properties, CA_PROP_EVENT_DESCRIPTION, name.c_str());
        // A copy cached by the server would outlive this process and hide a changed file; sending 100 kB is
        // quick.
        ca_proplist_sets(properties, CA_PROP_CANBERRA_CACHE_CONTROL, "never");
        const int result = ca_context_play_full(context_, 0, properties, nullptr, nullptr);
        ca_proplist_destroy(properties);
        return result;
    }

    ca_context* context_ = nullptr;
};

} // namespace

// Owned by both threads, so that it outlives a detached worker's use.
struct LinuxSounds::Shared {
    explicit Shared(std::filesystem::path soundFolder)
        : folder(std::move(soundFolder)) {}

    void work();

    const std::filesystem::path folder;
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable ended;
    SoundQueue queue; // guarded by the mutex, as are the next two
    bool isStopping = false;
    bool hasEnded = false;
};

void LinuxSounds::Shared::work() {
    // The main thread handles signals; libcanberra's own threads inherit this mask.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    {
        Player player;
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [this] { return isStopping || !queue.empty(); });
            if (isStopping) break;
            const std::optional<std::string> name = queue.next(Clock::now());
            if (!name) continue;
            lock.unlock();
            player.play(folder / (*name + ".wav"), *name);
            lock.lock();
        }
        lock.unlock();
    }
    const std::lock_guard lock(mutex);
    hasEnded = true;
    ended.notify_all();
}

LinuxSounds::LinuxSounds(std::filesystem::path folder)
    : shared_(std::make_shared<Shared>(std::move(folder))) {}

LinuxSounds::~LinuxSounds() {
    if (!thread_.joinable()) return;
    std::unique_lock lock(shared_->mutex);
    shared_->isStopping = true;
    shared_->wake.notify_all();
    const bool hasEnded = shared_->ended.wait_for(lock, patienceAtEnd, [this] { return shared_->hasEnded; });
    lock.unlock();
    if (hasEnded) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

void LinuxSounds::play(const std::string& name) {
    const auto& names = AlertPreferences::soundChoices;
    if (std::find(names.begin(), names.end(), name) == names.end()) return;
    const Clock::time_point now = Clock::now();
    if (!rateLimiter_.admit(name, now)) return;
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->queue.add(name, now);
    }
    shared_->wake.notify_one();
    if (thread_.joinable()) return;
    try {
        thread_ = std::thread([shared = shared_] { shared->work(); });
    } catch (const std::system_error&) {
        return; // no thread available: silent this time
    }
}

std::filesystem::path LinuxSounds::installedFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return {};
    return program.parent_path().parent_path() / "share" / "corvane" / "sounds";
}

} // namespace corvane
