#pragma once

#include <cstdlib>
#include <memory>

namespace corvane::x11 {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// Owns the result of an xcb_…_reply function; null if the request failed.
template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

} // namespace corvane::x11
