#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/TestModule.h"

namespace lorvane::test {

// Hand-made data files, byte by byte, without the record helpers under test.
inline std::string LittleEndian16(std::int16_t value) {
    const auto bits = static_cast<std::uint16_t>(value);
    return {static_cast<char>(bits & 0xFF), static_cast<char>(bits >> 8)};
}

inline std::string LittleEndianDouble(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::string bytes;
    for (int i = 0; i < 8; ++i) {
        bytes.push_back(static_cast<char>((bits >> (8 * i)) & 0xFF));
    }
    return bytes;
}

inline std::string Record12(std::int16_t a, std::int16_t b, double c) {
    return LittleEndian16(a) + LittleEndian16(b) + LittleEndianDouble(c);
}

inline std::string Record500(const std::string& text) {
    std::string record = text.substr(0, 500);
    record.resize(500, ' ');
    return record;
}

struct Input1Content {
    std::int16_t DataType = 2;
    std::int16_t FirstYear = 1990;
    double MissingCode = -99999.99;
    std::int16_t PeriodsPerYear = 4;
    std::int16_t FirstPeriod = 1;
    // columns[j][t]; ObsCount and VarCount follow from them unless set.
    std::vector<std::vector<double>> Columns;
    std::optional<int> ObsCount;
    std::optional<int> VarCount;

    std::string Bytes() const {
        const int varCount = VarCount.value_or(static_cast<int>(Columns.size()));
        const int obsCount =
            ObsCount.value_or(Columns.empty() ? 0 : static_cast<int>(Columns[0].size()));
        std::string bytes =
            Record12(DataType, FirstYear, MissingCode) + Record12(PeriodsPerYear, FirstPeriod, 0) +
            Record12(static_cast<std::int16_t>(obsCount), static_cast<std::int16_t>(varCount), 0);
        for (const auto& column : Columns) {
            for (const double value : column) {
                bytes += Record12(7, 7, value); // A and B of data records are never read
            }
        }
        return bytes;
    }
};

inline std::string Input2Bytes(const std::vector<std::string>& descriptionRecords,
                               const std::vector<std::string>& names) {
    std::string bytes;
    for (std::size_t r = 0; r < 3; ++r) {
        bytes += Record500(r < descriptionRecords.size() ? descriptionRecords[r] : "");
    }
    for (const auto& name : names) {
        bytes += Record500(name);
    }
    return bytes;
}

} // namespace lorvane::test
