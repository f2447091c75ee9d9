#include "frame/NumberText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <system_error>

#include "frame/RuntimeError.h"
#include "numeric/Decimal.h"

namespace lorvane {

namespace {

// A non-negative decimal value as significant digits and the position of the point:
// value = 0.digits x 10^point. Zero has no digits.
struct DigitString {
    std::string digits;
    int point = 0;
};

// The value rounded to 15 significant digits, exactly as the decimal text of a double does.
DigitString FifteenDigits(double magnitude) {
    DigitString result;
    if (magnitude == 0.0) {
        return result;
    }
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific, 14)
            .ptr;
    // d.dddddddddddddde[+-]xx
    result.digits.push_back(buffer[0]);
    result.digits.append(buffer + 2, 14);
    int exponent = 0;
    std::from_chars(buffer + (buffer[17] == '+' ? 18 : 17), end, exponent);
    result.point = exponent + 1;
    return result;
}

// Keeps `keep` leading digits and rounds half away from zero on the digit that follows.
void RoundToDigits(DigitString& value, int keep) {
    if (keep < 0) {
        value.digits.clear();
        return;
    }
    if (static_cast<int>(value.digits.size()) <= keep) {
        return;
    }
    const bool roundUp = value.digits[static_cast<std::size_t>(keep)] >= '5';
    value.digits.resize(static_cast<std::size_t>(keep));
    if (roundUp) {
        int i = keep - 1;
        while (i >= 0 && value.digits[static_cast<std::size_t>(i)] == '9') {
            value.digits[static_cast<std::size_t>(i)] = '0';
            --i;
        }
        if (i >= 0) {
            ++value.digits[static_cast<std::size_t>(i)];
        } else {
            value.digits.insert(value.digits.begin(), '1');
            ++value.point;
        }
    }
    while (!value.digits.empty() && value.digits.back() == '0') {
        value.digits.pop_back();
    }
    if (value.digits.empty()) {
        value.point = 0;
    }
}

// Digit k (0-based) of the digit string, zero beyond its end.
char DigitAt(const DigitString& value, int k) {
    return k >= 0 && k < static_cast<int>(value.digits.size())
               ? value.digits[static_cast<std::size_t>(k)]
               : '0';
}

struct Picture {
    int integerPlaces = 0;    // "#" and "0" before the point
    int minimumInteger = 0;   // places from the first "0" before the point
    int decimalPlaces = 0;    // places after the point
    int requiredDecimals = 0; // places up to the last "0" after the point
    bool hasPoint = false;
    bool scientific = false;
    char exponentLetter = 'E';
    bool exponentAlwaysSigned = false;
    int exponentDigits = 0;
};

Picture ParsePicture(std::string_view text) {
    Picture picture;
    std::size_t i = 0;
    bool seenZero = false;
    for (; i < text.size() && (text[i] == '#' || text[i] == '0'); ++i) {
        ++picture.integerPlaces;
        seenZero = seenZero || text[i] == '0';
        if (seenZero) {
            ++picture.minimumInteger;
        }
    }
    if (i < text.size() && text[i] == '.') {
        picture.hasPoint = true;
        for (++i; i < text.size() && (text[i] == '#' || text[i] == '0'); ++i) {
            ++picture.decimalPlaces;
            if (text[i] == '0') {
                picture.requiredDecimals = picture.decimalPlaces;
            }
        }
    }
    if (i + 1 < text.size() && (text[i] == 'E' || text[i] == 'e') &&
        (text[i + 1] == '+' || text[i + 1] == '-')) {
        picture.scientific = true;
        picture.exponentLetter = text[i];
        picture.exponentAlwaysSigned = text[i + 1] == '+';
        for (i += 2; i < text.size() && text[i] == '0'; ++i) {
            ++picture.exponentDigits;
        }
    }
    if (i != text.size() || picture.integerPlaces + picture.decimalPlaces == 0) {
        Raise(InvalidProcedureCall);
    }
    return picture;
}

// Appends the decimal places of the picture: digits first..first+places-1 of the value,
// with trailing "#" places dropped when they hold zeros.
void AppendDecimals(std::string& out, const DigitString& value, int first, const Picture& picture) {
    std::string decimals;
    for (int k = 0; k < picture.decimalPlaces; ++k) {
        decimals.push_back(DigitAt(value, first + k));
    }
    while (static_cast<int>(decimals.size()) > picture.requiredDecimals && decimals.back() == '0') {
        decimals.pop_back();
    }
    if (picture.hasPoint) {
        out.push_back('.');
    }
    out += decimals;
}

std::string FormatFixed(DigitString value, const Picture& picture) {
    RoundToDigits(value, value.point + picture.decimalPlaces);
    std::string integer;
    for (int k = 0; k < value.point; ++k) {
        integer.push_back(DigitAt(value, k));
    }
    if (static_cast<int>(integer.size()) < picture.minimumInteger) {
        integer.insert(0, static_cast<std::size_t>(picture.minimumInteger) - integer.size(), '0');
    }
    std::string out = integer;
    AppendDecimals(out, value, value.point, picture);
    return out;
}

std::string FormatScientific(DigitString value, const Picture& picture) {
    const int mantissaIntegers = std::max(picture.integerPlaces, 1);
    int exponent = 0;
    if (!value.digits.empty()) {
        RoundToDigits(value, mantissaIntegers + picture.decimalPlaces);
        exponent = value.point - mantissaIntegers;
    }
    std::string out;
    for (int k = 0; k < picture.integerPlaces; ++k) {
        out.push_back(DigitAt(value, k));
    }
    AppendDecimals(out, value, picture.integerPlaces, picture);
    out.push_back(picture.exponentLetter);
    if (exponent < 0) {
        out.push_back('-');
    } else if (picture.exponentAlwaysSigned) {
        out.push_back('+');
    }
    std::string digits = std::to_string(std::abs(exponent));
    if (static_cast<int>(digits.size()) < picture.exponentDigits) {
        digits.insert(0, static_cast<std::size_t>(picture.exponentDigits) - digits.size(), '0');
    }
    out += digits;
    return out;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

std::string NumberToText(double value) {
    std::string text = Decimal::FromDouble(value).ToText();
    const std::size_t point = text.find('.');
    if (point != std::string::npos) {
        while (text.back() == '0') {
            text.pop_back();
        }
        if (text.back() == '.') {
            text.pop_back();
        }
    }
    const bool negative = !text.empty() && text.front() == '-';
    std::string digits = negative ? text.substr(1) : text;
    if (digits.size() > 1 && digits[0] == '0' && digits[1] == '.') {
        digits.erase(0, 1);
    }
    return (negative ? "-" : " ") + digits;
}

std::string FormatNumber(double value, std::string_view picture) {
    if (!std::isfinite(value)) {
        Raise(Overflow);
    }
    const Picture parsed = ParsePicture(picture);
    const DigitString digits = FifteenDigits(std::fabs(value));
    std::string text =
        parsed.scientific ? FormatScientific(digits, parsed) : FormatFixed(digits, parsed);
    return value < 0.0 ? "-" + text : text;
}

double Val(std::string_view text) {
    std::string number;
    std::size_t i = 0;
    auto skipBlanks = [&] {
        while (i < text.size() && IsBlank(text[i])) {
            ++i;
        }
    };
    auto takeDigits = [&] {
        for (skipBlanks(); i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]));
             skipBlanks()) {
            number.push_back(text[i++]);
        }
    };
    skipBlanks();
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        number.push_back(text[i++]);
    }
    takeDigits();
    if (i < text.size() && text[i] == '.') {
        number.push_back(text[i++]);
        takeDigits();
    }
    const bool anyDigit = std::any_of(number.begin(), number.end(), [](char c) {
        return std::isdigit(static_cast<unsigned char>(c));
    });
    if (!anyDigit) {
        return 0.0;
    }
    skipBlanks();
    if (i < text.size() && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
        std::string exponent = "e";
        ++i;
        skipBlanks();
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
            exponent.push_back(text[i++]);
        }
        const std::size_t before = number.size();
        takeDigits();
        const std::string exponentDigits = number.substr(before);
        number.resize(before);
        if (!exponentDigits.empty()) {
            number += exponent + exponentDigits;
        }
    }
    double result = 0.0;
    const char* first = number.data();
    if (*first == '+') {
        ++first;
    }
    const auto [rest, error] = std::from_chars(first, number.data() + number.size(), result);
    if (error == std::errc::result_out_of_range) {
        // Too large to hold is an overflow; too small (1E-400, or a point and 400 zeros before
        // a digit) is as near to zero as a double comes.
        if (std::isinf(std::strtod(number.c_str(), nullptr))) {
            Raise(Overflow);
        }
        return 0.0;
    }
    return result;
}

std::string RightAligned(std::string_view text, std::size_t width) {
    std::string out;
    if (text.size() < width) {
        out.assign(width - text.size(), ' ');
    }
    out += text;
    return out;
}

std::string TrimLeft(std::string_view text) {
    std::size_t first = 0;
    while (first < text.size() && text[first] == ' ') {
        ++first;
    }
    return std::string(text.substr(first));
}

std::string TrimRight(std::string_view text) {
    std::size_t last = text.size();
    while (last > 0 && text[last - 1] == ' ') {
        --last;
    }
    return std::string(text.substr(0, last));
}

std::string Trim(std::string_view text) {
    return TrimRight(TrimLeft(text));
}

std::string UpperCase(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return out;
}

} // namespace lorvane
