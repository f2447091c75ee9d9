#pragma once

#include <cstdint>

namespace lorvane {

// The uniform random source: values in [0, 1) in single precision.
class Random {
public:
    virtual ~Random() = default;
    virtual float next() = 0;
    virtual void seed(std::uint32_t value) = 0;
};

} // namespace lorvane
