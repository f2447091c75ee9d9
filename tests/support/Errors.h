#pragma once

#include "frame/RuntimeError.h"

namespace lorvane::test {

// The number of the run-time error that call raises, or 0.
template <typename Call> int ErrorNumberOf(Call&& call) {
    try {
        call();
    } catch (const RuntimeError& error) {
        return error.Number();
    }
    return 0;
}

} // namespace lorvane::test
