#pragma once

#include <cstdint>
#include <type_traits>

#include "frame/RuntimeError.h"

namespace lorvane {

// The module's signed 16-bit whole number. Storing a value outside -32768..32767 raises
// run-time error 6, Overflow. Arithmetic happens in int after the implicit conversion, so
// an overflowing result is caught when it is stored back.
class Int16 {
public:
    constexpr Int16() = default;

    template <typename T>
    requires std::is_integral_v<T>
    constexpr Int16(T value) : value_(Narrow(static_cast<long long>(value))) {}

    constexpr operator int() const { return value_; }
    constexpr int Value() const { return value_; }

    constexpr Int16& operator+=(int other) {
        return *this = Int16(value_ + static_cast<long long>(other));
    }
    constexpr Int16& operator-=(int other) {
        return *this = Int16(value_ - static_cast<long long>(other));
    }
    constexpr Int16& operator++() { return *this += 1; }
    constexpr Int16& operator--() { return *this -= 1; }

private:
    static constexpr std::int16_t Narrow(long long value) {
        if (value < -32768 || value > 32767) {
            Raise(Overflow);
        }
        return static_cast<std::int16_t>(value);
    }

    std::int16_t value_ = 0;
};

// CInt: rounds half to even into 16 bits.
Int16 CInt(double x);
// Int: the largest whole number not above x.
double Int(double x);
// Fix: x with its fractional part dropped.
double Fix(double x);
// ToSingle: x rounded to IEEE single precision and back; 6 beyond the single range.
double ToSingle(double x);

} // namespace lorvane
