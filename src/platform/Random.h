#pragma once

#include <cstdint>

namespace lorvane {

// The uniform random source: values in [0, 1) in single precision.
class Random {
public:
    virtual ~Random() = default;
    virtual float next() = 0;
    // Fixes the seed. A fixed seed stays in force: later seeding from the clock leaves the
    // sequence alone, so that a scripted run is the same every time.
    virtual void seed(std::uint32_t value) = 0;
    // Seeds from the clock, seconds since midnight, unless a fixed seed is in force.
    virtual void seedFromClock(double secondsSinceMidnight) = 0;
};

} // namespace lorvane
