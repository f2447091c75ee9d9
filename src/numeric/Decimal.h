#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lorvane {

// The classic 96-bit scaled decimal (the OLE Automation DECIMAL): an unsigned 96-bit integer
// mantissa, a sign and a power-of-ten scale of 0 to 28, so value = +-mantissa / 10^scale.
//
// Arithmetic is exact when the result fits. Otherwise the result is rounded half to even to
// the largest scale (at most 28) at which its mantissa fits in 96 bits; a result that does not
// fit even at scale 0 raises run-time error 6 (Overflow), and a division by zero raises error
// 11. Magnitudes below half of 1E-28 therefore become 0. The value of a result depends only on
// the values of the operands, never on how many trailing zeros their mantissas carry; the
// scale of an exact result follows the runtime (a sum keeps the larger scale, a product the sum
// of the scales, a quotient the smallest scale that holds it but not less than the difference
// of the scales).
//
// The Try forms compute the same results without raising: they return false where the
// operator would raise and then leave `result` untouched. Loops that skip a failing statement
// use them.
class Decimal {
public:
    static constexpr int MaxScale = 28;

    constexpr Decimal() = default; // zero

    // The double with 15 significant digits, rounded to nearest (ties to even); digits beyond
    // scale 28 are rounded away too, so magnitudes below 5E-29 give 0. Trailing zeros are not
    // kept (1.5 has mantissa 15 and scale 1). |x| >= 79228162514264337593543950335, infinity
    // and NaN raise error 6.
    static Decimal FromDouble(double x);
    // The double times 10^power: the 15 significant digits of x, rounded as FromDouble rounds
    // them, with the decimal point moved by `power` places. Moving the point is exact; only
    // digits that the move takes beyond scale 28 are rounded (half to even), and a result beyond
    // the range raises error 6. FromDouble(x, 0) is FromDouble(x).
    static Decimal FromDouble(double x, int power);
    static Decimal FromInteger(long long value);
    // The raw parts as the DECIMAL structure holds them: mantissa = hi:mid:lo. A scale above 28
    // raises error 5.
    static Decimal FromParts(std::uint32_t lo, std::uint32_t mid, std::uint32_t hi, bool negative,
                             int scale);
    // Invariant text: an optional sign, digits and an optional "." with more digits, no blanks,
    // no exponent. Digits beyond what the type holds are rounded half to even; a value beyond
    // the range raises error 6 and any other text error 13 (Type mismatch).
    static Decimal FromText(std::string_view text);

    // The mantissa divided by 10^scale in double precision.
    double ToDouble() const;
    // The value times 10^power: the mantissa divided by 10^(scale - power) in double precision,
    // as ToDouble divides it; 0 below the range of doubles, an infinity beyond it. ToDouble(0)
    // is ToDouble().
    double ToDouble(int power) const;
    // The power of ten of the leading digit, floor(log10 |value|); 0 for zero.
    int LeadingPower() const;
    // The value times 10^-LeadingPower(): the same digits, between 1 and 10 in magnitude. Exact.
    Decimal Normalized() const;
    // Plain invariant text without exponent: "-0.25", "1999", "0". The digits after the point
    // are exactly those the scale holds, trailing zeros included ("1.50" for mantissa 150 at
    // scale 2).
    std::string ToText() const;

    std::uint32_t Lo32() const { return static_cast<std::uint32_t>(lo_); }
    std::uint32_t Mid32() const { return static_cast<std::uint32_t>(lo_ >> 32); }
    std::uint32_t Hi32() const { return hi_; }
    int Scale() const { return scale_; }
    // The stored sign; a zero is never negative.
    bool IsNegative() const { return negative_; }
    bool IsZero() const { return lo_ == 0 && hi_ == 0; }
    // -1, 0 or 1.
    int Sign() const { return IsZero() ? 0 : (negative_ ? -1 : 1); }
    Decimal Abs() const {
        Decimal result = *this;
        result.negative_ = false;
        return result;
    }

    Decimal operator-() const {
        Decimal result = *this;
        result.negative_ = !negative_ && !IsZero();
        return result;
    }
    friend Decimal operator+(const Decimal& a, const Decimal& b);
    friend Decimal operator-(const Decimal& a, const Decimal& b);
    friend Decimal operator*(const Decimal& a, const Decimal& b);
    friend Decimal operator/(const Decimal& a, const Decimal& b);
    Decimal& operator+=(const Decimal& other) { return *this = *this + other; }
    Decimal& operator-=(const Decimal& other) { return *this = *this - other; }
    Decimal& operator*=(const Decimal& other) { return *this = *this * other; }
    Decimal& operator/=(const Decimal& other) { return *this = *this / other; }

    // Numeric comparison: 1.0 equals 1, and a negative zero equals zero.
    friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b);
    friend bool operator==(const Decimal& a, const Decimal& b) { return (a <=> b) == 0; }

    [[nodiscard]] static bool TryAdd(const Decimal& a, const Decimal& b, Decimal& result);
    [[nodiscard]] static bool TrySubtract(const Decimal& a, const Decimal& b, Decimal& result);
    [[nodiscard]] static bool TryMultiply(const Decimal& a, const Decimal& b, Decimal& result);
    [[nodiscard]] static bool TryDivide(const Decimal& a, const Decimal& b, Decimal& result);
    // a - f * b as two statements of the runtime would give it: the product is rounded first.
    [[nodiscard]] static bool TryMultiplySubtract(const Decimal& a, const Decimal& f,
                                                  const Decimal& b, Decimal& result);
    // a + f * b, likewise.
    [[nodiscard]] static bool TryMultiplyAdd(const Decimal& a, const Decimal& f, const Decimal& b,
                                             Decimal& result);

    // Row operations: target[p] = target[p] - f * source[p] (or + for AddMultiple) for each of
    // the `count` positions p, each as TryMultiplySubtract gives it; an element whose statement
    // fails keeps its value.
    static void SubtractMultiple(Decimal* target, const Decimal& f, const Decimal* source,
                                 const int* positions, std::size_t count);
    static void AddMultiple(Decimal* target, const Decimal& f, const Decimal* source,
                            const int* positions, std::size_t count);

private:
    friend struct DecimalAccess;

    std::uint64_t lo_ = 0; // mantissa bits 0..63
    std::uint32_t hi_ = 0; // mantissa bits 64..95
    std::uint8_t scale_ = 0;
    bool negative_ = false;
};

inline Decimal Abs(const Decimal& value) {
    return value.Abs();
}

} // namespace lorvane
