#include "numeric/Decimal.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

#include "frame/RuntimeError.h"

namespace lorvane {

namespace {

__extension__ typedef unsigned __int128 u128;
using u64 = std::uint64_t;

// Every mantissa stays below 2^96.
constexpr u128 kLimit = static_cast<u128>(1) << 96;
// 2^96 / 10 rounded: what a mantissa that rounded up to 2^96 becomes one scale lower.
constexpr u128 kLimitTenth = (static_cast<u128>(0x19999999) << 64) | 0x999999999999999AULL;

constexpr std::array<u64, 20> kPow10 = [] {
    std::array<u64, 20> table{};
    u64 power = 1;
    for (auto& entry : table) {
        entry = power;
        power *= 10;
    }
    return table;
}();

// 10^0 .. 10^28, all below 2^94.
constexpr std::array<u128, 29> kPow10Wide = [] {
    std::array<u128, 29> table{};
    u128 power = 1;
    for (auto& entry : table) {
        entry = power;
        power *= 10;
    }
    return table;
}();

// A 192-bit unsigned integer, least significant limb first.
struct Wide {
    u64 w0 = 0;
    u64 w1 = 0;
    u64 w2 = 0;
};

Wide WideOf(u128 value) {
    return Wide{static_cast<u64>(value), static_cast<u64>(value >> 64), 0};
}

bool Fits96(const Wide& x) {
    return x.w2 == 0 && (x.w1 >> 32) == 0;
}

// The number of decimal digits of a mantissa below 2^96, at most 29 (1 for zero).
int DigitCount(u128 mantissa) {
    int count = 1;
    while (count < static_cast<int>(kPow10Wide.size()) &&
           mantissa >= kPow10Wide[static_cast<std::size_t>(count)]) {
        ++count;
    }
    return count;
}

bool IsZero(const Wide& x) {
    return (x.w0 | x.w1 | x.w2) == 0;
}

int BitLength(const Wide& x) {
    if (x.w2 != 0) {
        return 192 - std::countl_zero(x.w2);
    }
    if (x.w1 != 0) {
        return 128 - std::countl_zero(x.w1);
    }
    return 64 - std::countl_zero(x.w0);
}

int CompareWide(const Wide& a, const Wide& b) {
    if (a.w2 != b.w2) {
        return a.w2 < b.w2 ? -1 : 1;
    }
    if (a.w1 != b.w1) {
        return a.w1 < b.w1 ? -1 : 1;
    }
    if (a.w0 != b.w0) {
        return a.w0 < b.w0 ? -1 : 1;
    }
    return 0;
}

Wide AddWide(const Wide& a, const Wide& b) {
    Wide sum;
    const u128 low = static_cast<u128>(a.w0) + b.w0;
    sum.w0 = static_cast<u64>(low);
    const u128 mid = static_cast<u128>(a.w1) + b.w1 + static_cast<u64>(low >> 64);
    sum.w1 = static_cast<u64>(mid);
    sum.w2 = a.w2 + b.w2 + static_cast<u64>(mid >> 64);
    return sum;
}

// a - b for a >= b.
Wide SubtractWide(const Wide& a, const Wide& b) {
    Wide difference;
    const u128 low = static_cast<u128>(a.w0) - b.w0;
    difference.w0 = static_cast<u64>(low);
    const u64 borrow0 = static_cast<u64>(low >> 64) & 1;
    const u128 mid = static_cast<u128>(a.w1) - b.w1 - borrow0;
    difference.w1 = static_cast<u64>(mid);
    const u64 borrow1 = static_cast<u64>(mid >> 64) & 1;
    difference.w2 = a.w2 - b.w2 - borrow1;
    return difference;
}

// a * b for a, b below 2^96. The partial products are folded in one at a time, which keeps
// few 128-bit values alive at once.
[[gnu::always_inline]] inline Wide Multiply96(u128 a, u128 b) {
    const u64 aLow = static_cast<u64>(a);
    const u64 aHigh = static_cast<u64>(a >> 64);
    const u64 bLow = static_cast<u64>(b);
    const u64 bHigh = static_cast<u64>(b >> 64);
    Wide product;
    u128 t = static_cast<u128>(aLow) * bLow;
    product.w0 = static_cast<u64>(t);
    u128 middle = t >> 64;
    t = static_cast<u128>(aLow) * bHigh; // below 2^96
    middle += t;
    t = static_cast<u128>(aHigh) * bLow; // below 2^96
    middle += t;                         // below 2^98
    product.w1 = static_cast<u64>(middle);
    product.w2 = static_cast<u64>(middle >> 64) + aHigh * bHigh; // aHigh, bHigh below 2^32
    return product;
}

// a * b for b below 2^96.
[[gnu::always_inline]] inline Wide Multiply64By96(u64 a, u128 b) {
    const u128 low = static_cast<u128>(a) * static_cast<u64>(b);
    const u128 high = static_cast<u128>(a) * static_cast<u64>(b >> 64) + (low >> 64); // below 2^97
    return Wide{static_cast<u64>(low), static_cast<u64>(high), static_cast<u64>(high >> 64)};
}

// (high:low) / divisor for high < divisor.
u64 DivideWord(u64 high, u64 low, u64 divisor, u64& remainder) {
    const u128 dividend = (static_cast<u128>(high) << 64) | low;
    remainder = static_cast<u64>(dividend % divisor);
    return static_cast<u64>(dividend / divisor);
}

// What a truncating division cut off, measured against half a unit of the quotient.
enum class Tail : std::uint8_t { Zero, Below, Half, Above };

// The tail of two divisions in a row: `lower` from the first, `upper` from the second (whose
// divisor is even). Only an exact half of the second step lets the first one tip the balance.
Tail Combine(Tail lower, Tail upper) {
    if (lower == Tail::Zero) {
        return upper;
    }
    if (upper == Tail::Zero) {
        return Tail::Below;
    }
    if (upper == Tail::Half) {
        return Tail::Above;
    }
    return upper;
}

Tail TailOf(u64 remainder, u64 divisor) {
    const u64 half = divisor / 2;
    if (remainder == 0) {
        return Tail::Zero;
    }
    if (remainder < half) {
        return Tail::Below;
    }
    return remainder == half ? Tail::Half : Tail::Above;
}

bool RoundsUp(Tail tail, u64 lowestLimb) {
    return tail == Tail::Above || (tail == Tail::Half && (lowestLimb & 1) != 0);
}

// x = floor(x / 10^k) for 1 <= k <= 19.
Tail DivideByPow10Small(Wide& x, int k) {
    const u64 divisor = kPow10[static_cast<std::size_t>(k)];
    u64 remainder = 0;
    for (u64* limb : {&x.w2, &x.w1, &x.w0}) {
        if (remainder == 0 && *limb < divisor) {
            remainder = *limb;
            *limb = 0;
        } else {
            *limb = DivideWord(remainder, *limb, divisor, remainder);
        }
    }
    return TailOf(remainder, divisor);
}

// x = floor(x / 10^k) for any k >= 0.
Tail DivideByPow10(Wide& x, int k) {
    Tail tail = Tail::Zero;
    while (k > 0) {
        if (IsZero(x)) {
            return tail == Tail::Zero ? Tail::Zero : Tail::Below;
        }
        const int step = std::min(k, 19);
        tail = Combine(tail, DivideByPow10Small(x, step));
        k -= step;
    }
    return tail;
}

// x = floor(x / 2^n).
Tail ShiftRight(Wide& x, int n) {
    if (n <= 0) {
        return Tail::Zero;
    }
    if (n > 192) {
        const Tail tail = IsZero(x) ? Tail::Zero : Tail::Below;
        x = Wide{};
        return tail;
    }
    const u64 limbs[3] = {x.w0, x.w1, x.w2};
    const int halfBit = n - 1;
    const bool half = ((limbs[halfBit / 64] >> (halfBit % 64)) & 1) != 0;
    bool below = false;
    for (int limb = 0; limb <= halfBit / 64; ++limb) {
        const int bits = std::min(64, halfBit - 64 * limb);
        const u64 mask = bits >= 64 ? ~0ULL : ((1ULL << bits) - 1);
        below = below || (limbs[limb] & mask) != 0;
    }
    u64 shifted[3] = {0, 0, 0};
    const int whole = n / 64;
    const int part = n % 64;
    for (int limb = 0; limb + whole < 3; ++limb) {
        shifted[limb] = limbs[limb + whole] >> part;
        if (part != 0 && limb + whole + 1 < 3) {
            shifted[limb] |= limbs[limb + whole + 1] << (64 - part);
        }
    }
    x = Wide{shifted[0], shifted[1], shifted[2]};
    if (half) {
        return below ? Tail::Above : Tail::Half;
    }
    return below ? Tail::Below : Tail::Zero;
}

constexpr int BitWidth(u128 x) {
    int bits = 0;
    while (x != 0) {
        ++bits;
        x >>= 1;
    }
    return bits;
}

// Division by 10^k through multiplication: m = floor(2^(127 + bits) / 10^k) is a 128-bit
// fixed-point reciprocal of the divisor, where 10^k has `bits` significant bits.
struct Reciprocal {
    u128 divisor = 0;
    u128 half = 0;
    u64 m0 = 0;
    u64 m1 = 0;
    int shift = 0; // bits - 1
    // The estimate below carries fractionBits bits of the fraction of the quotient, short of
    // the truth by less than `margin` units of the last one; 0 bits where it carries too few.
    int fractionBits = 0;
    u64 margin = 0;
};

// Cuts happen for 1 <= k <= 29: a scale above 28 is cut to 28 at most 28 digits down, and a
// 192-bit value fits in 96 bits after 29 digits at the latest.
constexpr int kLargestQuickCut = 29;

constexpr std::array<Reciprocal, kLargestQuickCut + 1> kReciprocals = [] {
    std::array<Reciprocal, kLargestQuickCut + 1> table{};
    u128 divisor = 1;
    for (int k = 1; k <= kLargestQuickCut; ++k) {
        divisor *= 10;
        const int bits = BitWidth(divisor);
        u128 remainder = 0;
        u128 quotient = 0;
        for (int bit = 127 + bits; bit >= 0; --bit) {
            remainder = (remainder << 1) | (bit == 127 + bits ? 1 : 0);
            quotient <<= 1;
            if (remainder >= divisor) {
                remainder -= divisor;
                quotient |= 1;
            }
        }
        Reciprocal& entry = table[static_cast<std::size_t>(k)];
        entry.divisor = divisor;
        entry.half = divisor / 2;
        entry.m0 = static_cast<u64>(quotient);
        entry.m1 = static_cast<u64>(quotient >> 64);
        entry.shift = bits - 1;
        if (k < 20) {
            // Short by less than: 1 unit for the bits below the fraction, 1 for the partial
            // product left out, and x / 2^128 < 2^(bits - 32) for the truncation of m (x is
            // below 2^96 * 10^k).
            entry.fractionBits = bits - 1;
            entry.margin = (1ULL << std::max(0, bits - 32)) + 2;
        } else if (k >= 24) {
            // Short by less than: 1 unit for the bits below the fraction, 2 for the partial
            // products left out, and x / 2^192 < 1/4 for the truncation of m.
            entry.fractionBits = bits - 65;
            entry.margin = 4;
        }
    }
    return table;
}();

// 2^96 * 10^k: floor(x / 10^k) fits in 96 bits exactly when x is below it.
constexpr std::array<Wide, 29> kFitLimits = [] {
    std::array<Wide, 29> table{};
    for (std::size_t k = 0; k < table.size(); ++k) {
        const u128 power = kPow10Wide[k];
        table[k] = Wide{0, static_cast<u64>(power) << 32, static_cast<u64>(power >> 32)};
    }
    return table;
}();

// The limbs of x * m from 2^128 up, for the reciprocal m of 10^k, as a quotient estimate and
// the fraction bits below it. The lowest partial product, below 2^128, is left out, and for a
// divisor of 67 bits or more (k >= 20) also those below 2^192: together they make the estimate
// at most 4 below the true quotient.
struct Estimate {
    u128 quotient = 0;
    u64 fraction = 0; // the bits of the limb below the quotient, as many as fractionBits
};

[[gnu::always_inline]] inline Estimate EstimateQuotient(const Wide& x, int k) {
    const Reciprocal& r = kReciprocals[static_cast<std::size_t>(k)];
    // Column sums of the partial products, folded in one at a time.
    u128 t = static_cast<u128>(x.w1) * r.m1;
    u128 column2 = static_cast<u64>(t);
    u128 column3 = t >> 64;
    t = static_cast<u128>(x.w2) * r.m0;
    column2 += static_cast<u64>(t);
    column3 += t >> 64;
    if (k < 20) {
        t = static_cast<u128>(x.w0) * r.m1;
        u128 column1 = static_cast<u64>(t);
        column2 += t >> 64;
        t = static_cast<u128>(x.w1) * r.m0;
        column1 += static_cast<u64>(t);
        column2 += t >> 64;
        column2 += column1 >> 64;
    }
    t = static_cast<u128>(x.w2) * r.m1;
    column3 += static_cast<u64>(t);
    column3 += column2 >> 64;
    const u64 x2 = static_cast<u64>(column2);
    const u64 x3 = static_cast<u64>(column3);
    const u64 x4 = static_cast<u64>(t >> 64) + static_cast<u64>(column3 >> 64);
    const int shift = r.shift;
    Estimate estimate;
    if (shift < 64) { // shift >= 3, as 10^k has at least 4 bits
        estimate.quotient = ((static_cast<u128>(x3) << 64 | x2) >> shift) |
                            (static_cast<u128>(x4) << (128 - shift));
        estimate.fraction = x2 & ((1ULL << shift) - 1);
    } else {
        estimate.quotient = (static_cast<u128>(x4) << 64 | x3) >> (shift - 64);
        estimate.fraction = x3 & ((1ULL << (shift - 64)) - 1);
    }
    return estimate;
}

// quotient = floor(x / 10^k) and remainder = x - quotient * 10^k from an estimate.
[[gnu::always_inline]] inline void CorrectQuotient(const Wide& x, int k, u128 estimate,
                                                   u128& quotient, u128& remainder) {
    const u128 divisor = kReciprocals[static_cast<std::size_t>(k)].divisor;
    // The remainder is below 5 * 10^k < 2^128, so 128 bits of the product suffice.
    const u64 q0 = static_cast<u64>(estimate);
    const u64 q1 = static_cast<u64>(estimate >> 64);
    const u64 d0 = static_cast<u64>(divisor);
    const u64 d1 = static_cast<u64>(divisor >> 64);
    const u128 product = static_cast<u128>(q0) * d0 + (static_cast<u128>(q0 * d1 + q1 * d0) << 64);
    remainder = (static_cast<u128>(x.w1) << 64 | x.w0) - product;
    while (remainder >= divisor)
        [[unlikely]] {
            remainder -= divisor;
            ++estimate;
        }
    quotient = estimate;
}

// quotient = floor(x / 10^k) and remainder = x - quotient * 10^k, for 1 <= k <= 29 and a
// quotient below 2^128.
[[gnu::always_inline]] inline void DivideByPow10Quick(const Wide& x, int k, u128& quotient,
                                                      u128& remainder) {
    CorrectQuotient(x, k, EstimateQuotient(x, k).quotient, quotient, remainder);
}

// round(x / 10^k), ties to even, for 1 <= k <= 28 and x below 2^96 * 10^k.
[[gnu::always_inline]] inline u128 DivideByPow10Rounded(const Wide& x, int k) {
    const Estimate estimate = EstimateQuotient(x, k);
    const Reciprocal& r = kReciprocals[static_cast<std::size_t>(k)];
    if (r.fractionBits > 1) {
        // Unless the fraction lies within the margin below a half or a whole, it decides the
        // rounding, and the estimate is the quotient.
        const u64 half = 1ULL << (r.fractionBits - 1);
        const u64 f = estimate.fraction;
        const bool nearHalf = f - (half - r.margin) <= r.margin; // half - margin <= f <= half
        const bool nearWhole = f + r.margin >= 2 * half;
        if (!(nearHalf | nearWhole)) [[likely]] {
            return estimate.quotient + (f > half ? 1 : 0);
        }
    }
    u128 quotient;
    u128 remainder;
    CorrectQuotient(x, k, estimate.quotient, quotient, remainder);
    const bool odd = (static_cast<u64>(quotient) & 1) != 0;
    return quotient + (((remainder > r.half) | ((remainder == r.half) & odd)) ? 1 : 0);
}

} // namespace

// The private parts, for the helpers of this file.
struct DecimalAccess {
    static u128 Mantissa(const Decimal& d) { return (static_cast<u128>(d.hi_) << 64) | d.lo_; }

    static void Set(Decimal& d, u128 mantissa, int scale, bool negative) {
        d.lo_ = static_cast<u64>(mantissa);
        d.hi_ = static_cast<std::uint32_t>(mantissa >> 64);
        d.scale_ = static_cast<std::uint8_t>(scale);
        d.negative_ = negative && mantissa != 0;
    }

    // Rounds the exact value m / 10^scale, below which digits already cut off left `lower`, to
    // the largest scale up to 28 at which its mantissa fits. False when it fits nowhere.
    static bool Round(Wide m, int scale, Tail lower, u128& mantissa, int& resultScale) {
        if (lower == Tail::Zero && scale <= Decimal::MaxScale && Fits96(m)) [[likely]] {
            mantissa = (static_cast<u128>(m.w1) << 64) | m.w0;
            resultScale = scale;
            return true;
        }
        int cut = std::max(0, scale - Decimal::MaxScale);
        const int bits = BitLength(m);
        if (bits > 96) {
            // A lower bound of the digits to cut: 1233 / 4096 is just below log10(2).
            cut = std::max(cut, ((bits - 97) * 1233 >> 12) + 1);
        }
        while (cut < static_cast<int>(kFitLimits.size()) &&
               CompareWide(m, kFitLimits[static_cast<std::size_t>(cut)]) >= 0) {
            ++cut;
        }
        if (cut > scale) {
            return false;
        }
        u128 quotient;
        bool up;
        if (cut == 0) {
            quotient = (static_cast<u128>(m.w1) << 64) | m.w0;
            up = RoundsUp(lower, m.w0);
        } else if (cut <= kLargestQuickCut) [[likely]] {
            u128 remainder;
            DivideByPow10Quick(m, cut, quotient, remainder);
            const u128 half = kReciprocals[static_cast<std::size_t>(cut)].half;
            const bool odd = (static_cast<u64>(quotient) & 1) != 0;
            // Ties go to even unless digits cut off before tip the balance.
            up = (remainder > half) | ((remainder == half) & (odd | (lower != Tail::Zero)));
        } else {
            const Tail tail = Combine(lower, DivideByPow10(m, cut));
            quotient = (static_cast<u128>(m.w1) << 64) | m.w0;
            up = RoundsUp(tail, m.w0);
        }
        quotient += up ? 1 : 0;
        if (quotient == kLimit) [[unlikely]] {
            if (++cut > scale) {
                return false;
            }
            quotient = kLimitTenth;
        }
        mantissa = quotient;
        resultScale = scale - cut;
        return true;
    }

    static bool ScaleAndSet(const Wide& m, int scale, bool negative, Tail lower, Decimal& out) {
        u128 mantissa;
        int resultScale;
        if (!Round(m, scale, lower, mantissa, resultScale)) {
            return false;
        }
        Set(out, mantissa, resultScale, negative);
        return true;
    }

    // a + b from their parts.
    static bool AddParts(u128 ma, int sa, bool na, u128 mb, int sb, bool nb, Decimal& out) {
        if (sa != sb) {
            // Bring the operand with the smaller scale up to the larger one.
            if (sa > sb) {
                std::swap(ma, mb);
                std::swap(sa, sb);
                std::swap(na, nb);
            }
            const int shift = sb - sa;
            if (shift > 9) {
                const Wide raised = Multiply96(ma, kPow10Wide[static_cast<std::size_t>(shift)]);
                const Wide other = WideOf(mb);
                if (na == nb) {
                    return ScaleAndSet(AddWide(raised, other), sb, nb, Tail::Zero, out);
                }
                if (CompareWide(raised, other) >= 0) {
                    return ScaleAndSet(SubtractWide(raised, other), sb, na, Tail::Zero, out);
                }
                return ScaleAndSet(SubtractWide(other, raised), sb, nb, Tail::Zero, out);
            }
            // Below 2^126: the whole sum stays in 128 bits.
            ma *= kPow10[static_cast<std::size_t>(shift)];
            sa = sb;
        }
        // Both sums at once, so that the signs choose without a jump.
        const u128 sum = ma + mb;
        const bool aLarger = ma >= mb;
        const u128 difference = aLarger ? ma - mb : mb - ma;
        const bool same = na == nb;
        const u128 result = same ? sum : difference;
        const bool negative = same || aLarger ? na : nb;
        if (result >= kLimit) [[unlikely]] {
            return ScaleAndSet(WideOf(result), sa, negative, Tail::Zero, out);
        }
        Set(out, result, sa, negative);
        return true;
    }

    // The rounded product's mantissa and scale; the sign is the caller's.
    static bool MultiplyParts(const Decimal& a, const Decimal& b, u128& mantissa, int& scale) {
        const int exactScale = a.scale_ + b.scale_;
        if (a.hi_ == 0 && b.hi_ == 0) {
            const u128 product = static_cast<u128>(a.lo_) * b.lo_;
            if (product < kLimit && exactScale <= Decimal::MaxScale) {
                mantissa = product;
                scale = exactScale;
                return true;
            }
            return Round(WideOf(product), exactScale, Tail::Zero, mantissa, scale);
        }
        return Round(Multiply96(Mantissa(a), Mantissa(b)), exactScale, Tail::Zero, mantissa, scale);
    }

    static bool Add(const Decimal& a, const Decimal& b, bool negateB, Decimal& out) {
        return AddParts(Mantissa(a), a.scale_, a.negative_, Mantissa(b), b.scale_,
                        b.negative_ != negateB, out);
    }

    static bool Multiply(const Decimal& a, const Decimal& b, Decimal& out) {
        u128 mantissa;
        int scale;
        if (!MultiplyParts(a, b, mantissa, scale)) {
            return false;
        }
        Set(out, mantissa, scale, a.negative_ != b.negative_);
        return true;
    }

    // a + f * b, or a - f * b: the product is rounded on its own first. The usual case, a product
    // cut straight to scale 28 and added at that scale, takes the short way.
    [[gnu::always_inline]] static bool MultiplyAdd(const Decimal& a, const Decimal& f,
                                                   const Decimal& b, bool subtract, Decimal& out) {
        const int cut = f.scale_ + b.scale_ - Decimal::MaxScale;
        const bool termNegative = (f.negative_ != b.negative_) != subtract;
        if (cut > 0 && a.scale_ == Decimal::MaxScale) [[likely]] {
            // A factor of at most 64 bits (every converted double) needs half the multiplications.
            const Wide product = f.hi_ == 0 ? Multiply64By96(f.lo_, Mantissa(b))
                                            : Multiply96(Mantissa(f), Mantissa(b));
            if (CompareWide(product, kFitLimits[static_cast<std::size_t>(cut)]) < 0) [[likely]] {
                const u128 term = DivideByPow10Rounded(product, cut);
                const u128 ma = Mantissa(a);
                const u128 sum = ma + term;
                const bool aLarger = ma >= term;
                const u128 difference = aLarger ? ma - term : term - ma;
                const bool same = a.negative_ == termNegative;
                const u128 result = same ? sum : difference;
                if (result < kLimit && term < kLimit) [[likely]] {
                    Set(out, result, Decimal::MaxScale,
                        same || aLarger ? a.negative_ : termNegative);
                    return true;
                }
            }
        }
        return MultiplyAddGeneral(a, f, b, termNegative, out);
    }

    template <bool Subtract>
    static void MultiplyAddEach(Decimal* target, const Decimal& f, const Decimal* source,
                                const int* positions, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            Decimal& element = target[positions[i]];
            Decimal result;
            if (MultiplyAdd(element, f, source[positions[i]], Subtract, result)) [[likely]] {
                element = result;
            }
        }
    }

    [[gnu::noinline]] static bool MultiplyAddGeneral(const Decimal& a, const Decimal& f,
                                                     const Decimal& b, bool termNegative,
                                                     Decimal& out) {
        u128 mantissa;
        int scale;
        if (!MultiplyParts(f, b, mantissa, scale)) {
            return false;
        }
        return AddParts(Mantissa(a), a.scale_, a.negative_, mantissa, scale, termNegative, out);
    }

    // 0, or the number of the error the division raises.
    static int Divide(const Decimal& a, const Decimal& b, Decimal& out) {
        if (b.IsZero()) {
            return DivisionByZero;
        }
        const bool negative = a.negative_ != b.negative_;
        int scale = a.scale_ - b.scale_;
        const u128 divisor = Mantissa(b);
        u128 quotient = Mantissa(a) / divisor;
        u128 remainder = Mantissa(a) % divisor;
        // quotient = quotient * 10^digits + the next digits of the division; below 2^126.
        const auto extend = [&](int digits) {
            const u64 power = kPow10[static_cast<std::size_t>(digits)];
            const u128 raised = remainder * power;
            quotient = quotient * power + raised / divisor;
            remainder = raised % divisor;
            scale += digits;
        };
        while (scale < 0) {
            extend(std::min(9, -scale));
            if (quotient >= kLimit) {
                return Overflow;
            }
        }
        const int exactScale = scale;
        while (remainder != 0 && scale < Decimal::MaxScale) {
            int digits = std::min(9, Decimal::MaxScale - scale);
            while (digits > 0 &&
                   (quotient + 1) * kPow10[static_cast<std::size_t>(digits)] > kLimit) {
                --digits;
            }
            if (digits > 0) {
                extend(digits);
                continue;
            }
            // Only the actual next digit tells whether one more fits.
            const u128 raised = remainder * 10;
            const u128 next = quotient * 10 + raised / divisor;
            if (next >= kLimit) {
                break;
            }
            quotient = next;
            remainder = raised % divisor;
            ++scale;
        }
        if (remainder != 0) {
            const u128 twice = remainder << 1;
            if ((twice > divisor || (twice == divisor && (quotient & 1) != 0)) &&
                ++quotient == kLimit) {
                if (scale == 0) {
                    return Overflow;
                }
                quotient = kLimitTenth;
                --scale;
            }
        } else {
            while (scale > exactScale && quotient % 10 == 0) {
                quotient /= 10;
                --scale;
            }
        }
        Set(out, quotient, scale, negative);
        return 0;
    }

    static int CompareMagnitude(const Decimal& a, const Decimal& b) {
        const u128 ma = Mantissa(a);
        const u128 mb = Mantissa(b);
        if (a.scale_ == b.scale_) {
            return ma < mb ? -1 : (ma > mb ? 1 : 0);
        }
        if (a.scale_ < b.scale_) {
            return CompareWide(
                Multiply96(ma, kPow10Wide[static_cast<std::size_t>(b.scale_ - a.scale_)]),
                WideOf(mb));
        }
        return CompareWide(
            WideOf(ma), Multiply96(mb, kPow10Wide[static_cast<std::size_t>(a.scale_ - b.scale_)]));
    }
};

Decimal Decimal::FromDouble(double x) {
    const double magnitude = std::fabs(x);
    if (!(magnitude < 79228162514264337593543950335.0)) {
        Raise(Overflow);
    }
    Decimal result;
    if (magnitude == 0.0) {
        return result;
    }
    // magnitude = bits * 2^exponent exactly.
    int exponent = 0;
    const u64 bits = static_cast<u64>(std::ldexp(std::frexp(magnitude, &exponent), 53));
    exponent -= 53;
    // The decimal exponent of the leading digit; the estimate is corrected below.
    int leading = static_cast<int>(std::floor(std::log10(magnitude)));
    for (;;) {
        const int scale = std::min(14 - leading, MaxScale);
        // digits = floor(magnitude * 10^scale), with the tail cut off.
        Wide digits;
        Tail tail;
        if (scale >= 0) {
            digits = Multiply96(bits, kPow10Wide[static_cast<std::size_t>(scale)]);
            tail = ShiftRight(digits, -exponent); // magnitude < 10^15 here, so exponent < 0
        } else {
            digits = WideOf(bits);
            if (exponent >= 0) {
                digits = WideOf(static_cast<u128>(bits) << exponent);
                tail = DivideByPow10(digits, -scale);
            } else {
                const Tail shifted = ShiftRight(digits, -exponent);
                tail = Combine(shifted, DivideByPow10(digits, -scale));
            }
        }
        // digits holds at most 16 decimal digits here unless the estimate was too small.
        if (digits.w1 != 0 || digits.w2 != 0 || digits.w0 >= kPow10[15]) {
            ++leading;
            continue;
        }
        if (scale < MaxScale && digits.w0 < kPow10[14]) {
            --leading;
            continue;
        }
        u64 mantissa = digits.w0 + (RoundsUp(tail, digits.w0) ? 1 : 0);
        int finalScale = scale;
        while (finalScale > 0 && mantissa != 0 && mantissa % 10 == 0) {
            mantissa /= 10;
            --finalScale;
        }
        if (finalScale < 0) {
            DecimalAccess::Set(
                result, static_cast<u128>(mantissa) * kPow10[static_cast<std::size_t>(-finalScale)],
                0, x < 0);
        } else {
            DecimalAccess::Set(result, mantissa, mantissa == 0 ? 0 : finalScale, x < 0);
        }
        return result;
    }
}

namespace {

// digits / 10^scale for any scale: trailing zeros go while the scale is positive, a negative
// scale multiplies, digits beyond scale 28 are rounded half to even, and a value beyond the
// range raises error 6.
Decimal FromDigits(u128 digits, int scale, bool negative) {
    while (scale > 0 && digits % 10 == 0) {
        digits /= 10;
        --scale;
    }
    Wide mantissa = WideOf(digits);
    if (scale < 0) {
        if (-scale >= static_cast<int>(kPow10Wide.size())) {
            Raise(Overflow);
        }
        mantissa = Multiply96(digits, kPow10Wide[static_cast<std::size_t>(-scale)]);
        scale = 0;
    }
    Decimal result;
    if (!DecimalAccess::ScaleAndSet(mantissa, scale, negative, Tail::Zero, result)) {
        Raise(Overflow);
    }
    return result;
}

} // namespace

Decimal Decimal::FromDouble(double x, int power) {
    if (power == 0) {
        return FromDouble(x);
    }
    if (!std::isfinite(x)) {
        Raise(Overflow);
    }
    if (x == 0.0) {
        return Decimal();
    }
    const double magnitude = std::fabs(x);
    if (magnitude >= 1e-14 && magnitude < 1e28) {
        // FromDouble keeps all fifteen digits here: only the scale moves.
        const Decimal digits = FromDouble(x);
        return FromDigits(DecimalAccess::Mantissa(digits), digits.scale_ - power, x < 0);
    }
    // The fifteen significant digits, d.dddddddddddddde[+-]x, rounded to nearest with ties to
    // even as FromDouble rounds them.
    char text[32];
    const auto written =
        std::to_chars(text, text + sizeof(text), magnitude, std::chars_format::scientific, 14);
    u64 digits = 0;
    const char* c = text;
    for (; c != written.ptr && *c != 'e'; ++c) {
        if (*c != '.') {
            digits = digits * 10 + static_cast<u64>(*c - '0');
        }
    }
    int exponent = 0;
    const char* first = c + 1;
    if (first != written.ptr && *first == '+') {
        ++first;
    }
    std::from_chars(first, written.ptr, exponent);
    // x is digits * 10^(exponent - 14).
    return FromDigits(digits, 14 - exponent - power, x < 0);
}

Decimal Decimal::FromInteger(long long value) {
    Decimal result;
    const u64 magnitude = value < 0 ? 0 - static_cast<u64>(value) : static_cast<u64>(value);
    DecimalAccess::Set(result, magnitude, 0, value < 0);
    return result;
}

Decimal Decimal::FromParts(std::uint32_t lo, std::uint32_t mid, std::uint32_t hi, bool negative,
                           int scale) {
    if (scale < 0 || scale > MaxScale) {
        Raise(InvalidProcedureCall);
    }
    Decimal result;
    const u128 mantissa = (static_cast<u128>(hi) << 64) | (static_cast<u128>(mid) << 32) | lo;
    DecimalAccess::Set(result, mantissa, scale, negative);
    return result;
}

Decimal Decimal::FromText(std::string_view text) {
    std::size_t position = 0;
    bool negative = false;
    if (position < text.size() && (text[position] == '-' || text[position] == '+')) {
        negative = text[position] == '-';
        ++position;
    }
    Wide digits;
    int scale = 0;
    int count = 0;
    bool point = false;
    Tail dropped = Tail::Zero; // digits beyond 57 significant ones, after the point
    bool firstDropped = true;
    for (; position < text.size(); ++position) {
        const char c = text[position];
        if (c == '.' && !point) {
            point = true;
            continue;
        }
        if (c < '0' || c > '9') {
            Raise(TypeMismatch);
        }
        ++count;
        const unsigned digit = static_cast<unsigned>(c - '0');
        if (digits.w2 < (1ULL << 58)) {
            // digits * 10 + digit, limb by limb
            const u128 low = static_cast<u128>(digits.w0) * 10 + digit;
            const u128 mid = static_cast<u128>(digits.w1) * 10 + static_cast<u64>(low >> 64);
            digits.w0 = static_cast<u64>(low);
            digits.w1 = static_cast<u64>(mid);
            digits.w2 = digits.w2 * 10 + static_cast<u64>(mid >> 64);
            if (point) {
                ++scale;
            }
        } else if (!point) {
            Raise(Overflow); // more than 57 digits before the point
        } else if (firstDropped) {
            dropped = digit == 0
                          ? Tail::Zero
                          : (digit < 5 ? Tail::Below : (digit == 5 ? Tail::Half : Tail::Above));
            firstDropped = false;
        } else if (digit != 0) {
            dropped = Combine(Tail::Below, dropped);
        }
    }
    if (count == 0) {
        Raise(TypeMismatch);
    }
    Decimal result;
    if (!DecimalAccess::ScaleAndSet(digits, scale, negative, dropped, result)) {
        Raise(Overflow);
    }
    return result;
}

namespace {

// 10^0 .. 10^28 as doubles (exact up to 10^22).
constexpr std::array<double, 29> kDoublePowers = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14,
    1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22, 1e23, 1e24, 1e25, 1e26, 1e27, 1e28};

} // namespace

double Decimal::ToDouble() const {
    if (IsZero()) {
        return 0.0;
    }
    const double value =
        static_cast<double>(DecimalAccess::Mantissa(*this)) / kDoublePowers[scale_];
    return negative_ ? -value : value;
}

double Decimal::ToDouble(int power) const {
    if (power == 0 || IsZero()) {
        return ToDouble();
    }
    // The mantissa divided by 10^k in double precision, as ToDouble divides it by 10^scale;
    // far beyond the table in steps that do not overflow on the way.
    int k = scale_ - power;
    double value = static_cast<double>(DecimalAccess::Mantissa(*this));
    for (; k > 300; k -= 300) {
        value /= 1e300;
    }
    for (; k < -300; k += 300) {
        value *= 1e300;
    }
    if (k >= 0 && k < static_cast<int>(kDoublePowers.size())) {
        value /= kDoublePowers[static_cast<std::size_t>(k)];
    } else {
        value = k > 0 ? value / std::pow(10.0, k) : value * std::pow(10.0, -k);
    }
    return negative_ ? -value : value;
}

int Decimal::LeadingPower() const {
    if (IsZero()) {
        return 0;
    }
    return DigitCount(DecimalAccess::Mantissa(*this)) - 1 - scale_;
}

Decimal Decimal::Normalized() const {
    Decimal result = *this;
    if (!IsZero()) {
        // At most 29 digits, so the scale stays within 28.
        result.scale_ = static_cast<std::uint8_t>(DigitCount(DecimalAccess::Mantissa(*this)) - 1);
    }
    return result;
}

std::string Decimal::ToText() const {
    u128 mantissa = DecimalAccess::Mantissa(*this);
    std::string digits;
    do {
        digits.push_back(static_cast<char>('0' + static_cast<int>(mantissa % 10)));
        mantissa /= 10;
    } while (mantissa != 0);
    while (static_cast<int>(digits.size()) <= scale_) {
        digits.push_back('0');
    }
    std::reverse(digits.begin(), digits.end());
    if (scale_ > 0) {
        digits.insert(digits.size() - scale_, 1, '.');
    }
    if (negative_ && !IsZero()) {
        digits.insert(digits.begin(), '-');
    }
    return digits;
}

bool Decimal::TryAdd(const Decimal& a, const Decimal& b, Decimal& result) {
    return DecimalAccess::Add(a, b, false, result);
}

bool Decimal::TrySubtract(const Decimal& a, const Decimal& b, Decimal& result) {
    return DecimalAccess::Add(a, b, true, result);
}

bool Decimal::TryMultiply(const Decimal& a, const Decimal& b, Decimal& result) {
    return DecimalAccess::Multiply(a, b, result);
}

bool Decimal::TryDivide(const Decimal& a, const Decimal& b, Decimal& result) {
    return DecimalAccess::Divide(a, b, result) == 0;
}

bool Decimal::TryMultiplySubtract(const Decimal& a, const Decimal& f, const Decimal& b,
                                  Decimal& result) {
    return DecimalAccess::MultiplyAdd(a, f, b, true, result);
}

bool Decimal::TryMultiplyAdd(const Decimal& a, const Decimal& f, const Decimal& b,
                             Decimal& result) {
    return DecimalAccess::MultiplyAdd(a, f, b, false, result);
}

void Decimal::SubtractMultiple(Decimal* target, const Decimal& f, const Decimal* source,
                               const int* positions, std::size_t count) {
    DecimalAccess::MultiplyAddEach<true>(target, f, source, positions, count);
}

void Decimal::AddMultiple(Decimal* target, const Decimal& f, const Decimal* source,
                          const int* positions, std::size_t count) {
    DecimalAccess::MultiplyAddEach<false>(target, f, source, positions, count);
}

Decimal operator+(const Decimal& a, const Decimal& b) {
    Decimal result;
    if (!DecimalAccess::Add(a, b, false, result)) {
        Raise(Overflow);
    }
    return result;
}

Decimal operator-(const Decimal& a, const Decimal& b) {
    Decimal result;
    if (!DecimalAccess::Add(a, b, true, result)) {
        Raise(Overflow);
    }
    return result;
}

Decimal operator*(const Decimal& a, const Decimal& b) {
    Decimal result;
    if (!DecimalAccess::Multiply(a, b, result)) {
        Raise(Overflow);
    }
    return result;
}

Decimal operator/(const Decimal& a, const Decimal& b) {
    Decimal result;
    if (const int error = DecimalAccess::Divide(a, b, result); error != 0) {
        Raise(error);
    }
    return result;
}

std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) {
    const int signA = a.Sign();
    const int signB = b.Sign();
    if (signA != signB || signA == 0) {
        return signA <=> signB;
    }
    const int magnitude = DecimalAccess::CompareMagnitude(a, b);
    return signA > 0 ? magnitude <=> 0 : 0 <=> magnitude;
}

} // namespace lorvane
