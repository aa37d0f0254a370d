// No exception may cross into a C caller: the library's C functions run
// their C++ through this, which turns an exhausted memory into a status.
#pragma once

#include <new>

namespace qorvel {

template <typename Result, typename Work>
Result or_on_oom(Result on_oom, Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return on_oom;
    }
}

}  // namespace qorvel
