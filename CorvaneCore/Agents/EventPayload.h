#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads the JSON object that an agent handed over: checks the whole document, keeps a few of its strings.
///
/// The document must be strict JSON (RFC 8259) in valid UTF-8 without a byte-order mark, with an object at
/// its top and at most `maxDepth` levels of objects and arrays. Numbers may have any length and size. An
/// object may carry a name twice; the last one counts. Half of a surrogate pair, which JavaScript writes as
/// an escape of its own for text that was cut inside a character, is read as U+FFFD.
///
/// Why 450 lines, JsonTokens included, when there are libraries: agents send texts of megabytes, which are
/// read on the main thread. A full inbox of 200 payloads of one long text of 1 MiB takes 0.03 s (6,240
/// MiB/s), simdjson's own document parser 0.08 s (2,580 MiB/s) and nlohmann/json 0.75 s (265 MiB/s). Payloads
/// of many short members are slower than simdjson's (519 against 1,470 MiB/s, nlohmann/json 194). Both
/// libraries also refuse numbers that fit no type of theirs. Benchmarks/README.md says how that was measured.
///
/// Takes time linear in the document's size. Its working memory is bounded by about six times the size of the
/// largest document read, mostly untouched, and serves again for the next document. Not for use by two
/// threads at once.
class EventPayload {
  public:
    /// Levels of nesting allowed, the top-level object included. Deeper documents come from nobody who means
    /// well, and every level costs stack.
    static constexpr std::size_t maxDepth = 1024;

    /// The bytes behind a document that must be readable, whatever they hold.
    static constexpr std::size_t padding = 64;

    EventPayload();
    EventPayload(const EventPayload&) = delete;
    EventPayload& operator=(const EventPayload&) = delete;
    ~EventPayload();

    /// Reads `json`, behind which `padding` further bytes are readable, and looks out for the top-level
    /// members `names`. False when the document is not as described above; then `string()` has nothing to
    /// give. Neither the bytes of `json` nor those of `names` are copied: both must outlive the calls of
    /// `string()`.
    [[nodiscard]] bool read(std::string_view json, std::span<const std::string_view> names);

    /// The value of the top-level member `name`, one of the names given to `read()`; none when the member is
    /// missing or is not a string.
    [[nodiscard]] std::optional<std::string> string(std::string_view name) const;

    /// The first element of the top-level array `name`, one of the names given to `read()`; none when the
    /// member is missing, is not an array or does not begin with a string.
    [[nodiscard]] std::optional<std::string> firstString(std::string_view name) const;

  private:
    struct Member {
        std::string_view name;
        std::optional<std::string_view> literal;  // what stands between the quotes, escapes included
        std::optional<std::string_view> elements; // what follows an array's opening bracket
    };
    struct Parser; // keeps the library's large header out of this one

    bool readDocument(std::string_view json);
    void remember(std::string_view nameLiteral, std::string_view valueToken, std::string_view json);

    std::unique_ptr<Parser> parser_;
    std::vector<Member> members_;
};

} // namespace corvane
