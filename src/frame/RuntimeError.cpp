#include "frame/RuntimeError.h"

#include <cmath>
#include <new>
#include <stdexcept>

namespace lorvane {

namespace {

std::string StandardDescription(int number) {
    switch (number) {
    case InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case Overflow:
        return "Overflow";
    case OutOfMemory:
        return "Out of memory";
    case SubscriptOutOfRange:
        return "Subscript out of range";
    case DivisionByZero:
        return "Division by zero";
    case TypeMismatch:
        return "Type mismatch";
    case InternalError:
        return "Internal error";
    case FileNotFound:
        return "File not found";
    case InputPastEndOfFile:
        return "Input past end of file";
    case PathFileAccessError:
        return "Path/File access error";
    default:
        return "Application-defined or object-defined error";
    }
}

} // namespace

RuntimeError::RuntimeError(int number, std::string description)
    : std::runtime_error("Run-time error " + std::to_string(number) + ": " + description),
      number_(number), description_(std::move(description)) {}

RuntimeError ErrorOfException(const std::exception& exception) {
    if (const auto* error = dynamic_cast<const RuntimeError*>(&exception)) {
        return *error;
    }
    if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ||
        dynamic_cast<const std::length_error*>(&exception) != nullptr) {
        return RuntimeError::Of(OutOfMemory);
    }
    if (dynamic_cast<const std::out_of_range*>(&exception) != nullptr) {
        return RuntimeError::Of(SubscriptOutOfRange);
    }
    return RuntimeError::Of(InternalError);
}

RuntimeError RuntimeError::Of(int number) {
    return RuntimeError(number, StandardDescription(number));
}

std::string RuntimeError::MessageText() const {
    return "Run-time error '" + std::to_string(number_) + "':\r\n\r\n" + description_;
}

void Raise(int number) {
    throw RuntimeError::Of(number);
}

bool IsArithmeticStop(const RuntimeError& error) {
    return error.Number() == InvalidProcedureCall || error.Number() == Overflow ||
           error.Number() == DivisionByZero;
}

double CheckedFinite(double x) {
    if (!std::isfinite(x)) {
        Raise(Overflow);
    }
    return x;
}

double CheckedDivide(double numerator, double denominator) {
    if (denominator == 0.0) {
        Raise(numerator == 0.0 ? Overflow : DivisionByZero);
    }
    return CheckedFinite(numerator / denominator);
}

double CheckedSqrt(double x) {
    if (x < 0.0) {
        Raise(InvalidProcedureCall);
    }
    return std::sqrt(x);
}

double CheckedLog(double x) {
    if (!(x > 0.0)) {
        Raise(InvalidProcedureCall);
    }
    return std::log(x);
}

double CheckedExp(double x) {
    return CheckedFinite(std::exp(x));
}

} // namespace lorvane
