#pragma once

namespace lorvane {

struct CivilDate {
    int year = 0;
    int month = 0;
    int day = 0;
};

class Clock {
public:
    virtual ~Clock() = default;
    // Seconds since local midnight, with a fraction.
    virtual double secondsSinceMidnight() const = 0;
    virtual CivilDate today() const = 0;
};

} // namespace lorvane
