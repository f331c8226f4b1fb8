#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads the JSON object that an agent passed to its hook: checks the whole document, keeps a few of its
/// strings.
///
/// The document must be strict JSON (RFC 8259) in valid UTF-8 without a byte-order mark, with an object at
/// its top and at most `maxDepth` levels of objects and arrays. Numbers may have any length and size. An
/// object may carry a name twice; the last one counts. An unpaired surrogate, which JavaScript escapes when
/// text was cut inside a character, is read as U+FFFD.
///
/// Why almost 500 lines, JsonTokens included, when there are libraries: agents send texts of megabytes, which
/// are read on the main thread. A full inbox of 200 payloads of one long text of 1 MiB takes 0.03 s (6,240
/// MiB/s), simdjson's own document parser 0.08 s (2,580 MiB/s) and nlohmann/json 0.75 s (265 MiB/s). Payloads
/// of many short members are slower than simdjson's (519 against 1,470 MiB/s, nlohmann/json 194). Both
/// libraries also reject numbers that fit none of their types. Benchmarks/README.md says how this was
/// measured.
///
/// Takes time linear in the document's size. Its working memory is bounded by about six times the size of the
/// largest document read, mostly untouched, and is reused for the next document. Not thread-safe.
class EventPayload {
  public:
    /// Levels of nesting allowed, the top-level object included. No honest document is deeper, and every
    /// level costs stack.
    static constexpr std::size_t maxDepth = 1024;

    /// The number of bytes after a document that must be readable, whatever they hold.
    static constexpr std::size_t padding = 64;

    EventPayload();
    EventPayload(const EventPayload&) = delete;
    EventPayload& operator=(const EventPayload&) = delete;
    ~EventPayload();

    /// Reads `json`, which must be followed by `padding` readable bytes, and remembers the top-level members
    /// `names`. Returns false when the document is not as described above; then `string()` returns none.
    /// Neither `json` nor `names` is copied: both must outlive the calls of `string()`.
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
        std::optional<std::string_view> literal;  // the text between the quotes, escapes included
        std::optional<std::string_view> elements; // what follows an array's opening bracket
    };
    struct Parser; // keeps the library's large header out of this one

    bool readDocument(std::string_view json);
    void remember(std::string_view nameLiteral, std::string_view valueToken, std::string_view json);

    std::unique_ptr<Parser> parser_;
    std::vector<Member> members_;
};

} // namespace corvane
