#pragma once

#include <cstdlib>
#include <memory>

namespace corvane::test {

struct FreeXReply {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, an event or an error that XCB has allocated.
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeXReply>;

} // namespace corvane::test
