#include "Agents/HookScript.h"
#include "Support/Files.h"
#include "Support/HookRunner.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace HookScript = corvane::HookScript;

using corvane::AgentKind;
using corvane::CorvanePaths;
using corvane::test::fileBytes;
using corvane::test::writeFile;

std::vector<std::string> lines(std::string_view text) {
    std::vector<std::string> result{""};
    for (const char c : text) {
        if (c == '\n') {
            result.emplace_back();
        } else {
            result.back().push_back(c);
        }
    }
    return result;
}

unsigned permissions(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

/// Sets the file creation mask for a test.
class CreationMask {
  public:
    explicit CreationMask(mode_t mask)
        : old_(umask(mask)) {}
    CreationMask(const CreationMask&) = delete;
    CreationMask& operator=(const CreationMask&) = delete;
    ~CreationMask() { umask(old_); }

  private:
    mode_t old_;
};

TEST(HookScript, hasExactlyItsLinesAroundTwoComments) {
    std::vector<std::string> text = lines(HookScript::contents);
    ASSERT_EQ(text.size(), 21U);
    EXPECT_TRUE(text[1].starts_with("# "));
    EXPECT_TRUE(text[2].starts_with("# "));
    EXPECT_NE(text[2].find("Settings ▸ Agents ▸ Remove"), std::string::npos);
    EXPECT_NE(text[2].find("sends nothing over the network"), std::string::npos);
    text.erase(text.begin() + 1, text.begin() + 3);
    EXPECT_EQ(text,
              (std::vector<std::string>{
                  "#!/bin/sh",
                  "dir=\"$HOME/Library/Application Support/Corvane/events\"",
                  "mkdir -p \"$dir\" 2>/dev/null || exit 0",
                  "source=\"${1:-claude}\"",
                  "tmp=\"$dir/.$$.$(date +%s).tmp\"",
                  "{",
                  "  printf 'corvane-event 1\\n'",
                  "  printf 'source=%s\\n' \"$source\"",
                  "  printf 'term=%s\\n' \"$(printf '%s' \"${TERM_PROGRAM:-}\" | tr -d '\\n')\"",
                  "  printf 'bundle=%s\\n' \"$(printf '%s' \"${__CFBundleIdentifier:-}\" | tr -d '\\n')\"",
                  "  printf -- '---\\n'",
                  "  if [ \"$source\" = \"codex\" ]; then",
                  "    for last in \"$@\"; do :; done",
                  "    printf '%s\\n' \"$last\"",
                  "  else",
                  "    cat",
                  "  fi",
                  "} > \"$tmp\" 2>/dev/null && mv \"$tmp\" \"$dir/$(date +%s)-$$.event\" 2>/dev/null",
                  "exit 0",
              }));
}

TEST(HookScript, isRecognisedByAPieceOfItsStandardPath) {
    EXPECT_EQ(HookScript::marker, "Corvane/bin/corvane-hook");
    EXPECT_TRUE(CorvanePaths::standard("/home/you").hookScript().string().ends_with(HookScript::marker));
}

TEST(HookScript, isCalledByItsQuotedPathAndTheAgentsName) {
    EXPECT_EQ(HookScript::command(AgentKind::claude, {"/tmp/x"}), "\"/tmp/x/bin/corvane-hook\" claude");
    EXPECT_EQ(HookScript::command(AgentKind::codex, {"/tmp/x"}), "\"/tmp/x/bin/corvane-hook\" codex");
    EXPECT_EQ(HookScript::command(AgentKind::claude, CorvanePaths::standard("/home/you")),
              "\"/home/you/Library/Application Support/Corvane/bin/corvane-hook\" claude");
}

TEST(HookScript, passesShellcheckWithoutAWarning) {
    const corvane::test::ScratchFolder scratch;
    const CorvanePaths paths{scratch.path()};
    HookScript::install(paths);
    corvane::test::HookRunner runner(scratch.path());
    EXPECT_EQ(runner.run({{"/usr/bin/env", "shellcheck", "-s", "sh", paths.hookScript()}, "", {}}),
              (corvane::test::Outcome{0, "", ""}))
        << "shellcheck reports findings, or is not installed";
}

TEST(HookScript, installsIntoAnEmptySupportDirectory) {
    const corvane::test::ScratchFolder scratch;
    const CorvanePaths paths{scratch / "deep/down"};
    HookScript::install(paths);
    EXPECT_EQ(fileBytes(paths.hookScript()), HookScript::contents);
    EXPECT_EQ(permissions(paths.hookScript()), 0755U);
    EXPECT_TRUE(fs::is_directory(paths.events()));
}

TEST(HookScript, leavesOneFileWhenInstalledTwice) {
    const corvane::test::ScratchFolder scratch;
    const CorvanePaths paths{scratch.path()};
    HookScript::install(paths);
    writeFile(paths.events() / "1-2.event", "kept");
    HookScript::install(paths);
    EXPECT_EQ(fileBytes(paths.hookScript()), HookScript::contents);
    EXPECT_EQ(std::distance(fs::directory_iterator(paths.hookScript().parent_path()), {}), 1);
    EXPECT_EQ(fileBytes(paths.events() / "1-2.event"), "kept");
}

TEST(HookScript, replacesAnOlderHookAndItsPermissions) {
    const corvane::test::ScratchFolder scratch;
    const CorvanePaths paths{scratch.path()};
    writeFile(paths.hookScript(), "#!/bin/sh\necho old\n");
    fs::permissions(paths.hookScript(), fs::perms(0600));
    HookScript::install(paths);
    EXPECT_EQ(fileBytes(paths.hookScript()), HookScript::contents);
    EXPECT_EQ(permissions(paths.hookScript()), 0755U);
}

TEST(HookScript, getsItsPermissionsWhateverTheCreationMask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{077}}) {
        const corvane::test::ScratchFolder scratch;
        const CorvanePaths paths{scratch.path()};
        const CreationMask set(mask);
        HookScript::install(paths);
        EXPECT_EQ(permissions(paths.hookScript()), 0755U) << mask;
    }
}

TEST(HookScript, stopsAtTheFirstStepThatFails) {
    using corvane::files::FileError;
    const corvane::test::ScratchFolder scratch;
    {
        const CorvanePaths paths{scratch / "one"};
        writeFile(scratch / "one/bin", "a file");
        EXPECT_THROW(HookScript::install(paths), FileError);
        EXPECT_FALSE(fs::exists(paths.events()));
    }
    {
        const CorvanePaths paths{scratch / "two"};
        writeFile(scratch / "two/events", "a file");
        EXPECT_THROW(HookScript::install(paths), FileError);
        EXPECT_TRUE(fs::is_directory(scratch / "two/bin"));
        EXPECT_FALSE(fs::exists(paths.hookScript()));
    }
    {
        const CorvanePaths paths{scratch / "three"};
        fs::create_directories(paths.hookScript());
        EXPECT_THROW(HookScript::install(paths), FileError);
        EXPECT_TRUE(fs::is_directory(paths.events()));
        EXPECT_TRUE(fs::is_directory(paths.hookScript()));
    }
    {
        writeFile(scratch / "four", "a file");
        EXPECT_THROW(HookScript::install({scratch / "four"}), FileError);
        EXPECT_EQ(fileBytes(scratch / "four"), "a file");
    }
}

} // namespace
