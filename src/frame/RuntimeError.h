#pragma once

#include <stdexcept>
#include <string>

namespace lorvane {

// A run-time error with the classic numbers. Uncaught at the end of a user action it ends the
// module with "Run-time error 'N':" and its description.
class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, std::string description);

    // The error with its standard description (5, 6, 7, 9, 11, 13, 51, 53, 62, 75).
    static RuntimeError Of(int number);

    int Number() const { return number_; }
    const std::string& Description() const { return description_; }

    // "Run-time error 'N':" + CR LF + CR LF + description, as the platform shows it.
    std::string MessageText() const;

private:
    int number_;
    std::string description_;
};

inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int InternalError = 51;
inline constexpr int FileNotFound = 53;
inline constexpr int InputPastEndOfFile = 62;
inline constexpr int PathFileAccessError = 75;

[[noreturn]] void Raise(int number);

// An arithmetic stop: an invalid argument (5), an overflow (6) or a division by zero (11). A
// computation that may end in words on one lets every other run-time error (a damaged file, a
// lack of memory) end the module.
bool IsArithmeticStop(const RuntimeError& error);

// The run-time error that stands for an exception escaping a user action: a RuntimeError itself;
// 7, Out of memory, for a failed or impossible allocation (bad_alloc, length_error); 9 for
// out_of_range; 51, Internal error, for any other standard exception.
RuntimeError ErrorOfException(const std::exception& exception);

// Checked floating-point helpers: they raise the classic error where the classic runtime would.
double CheckedDivide(double numerator, double denominator); // 11, or 6 for 0/0 and overflow
double CheckedSqrt(double x);                               // 5 for x < 0
double CheckedLog(double x);                                // 5 for x <= 0
double CheckedExp(double x);                                // 6 when the result overflows
double CheckedFinite(double x);                             // 6 for an infinite or NaN value

} // namespace lorvane
