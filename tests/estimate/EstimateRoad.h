#pragma once

// Roads to the estimation screen shared by the tests of this folder.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "support/E1Road.h"
#include "support/TestModule.h"

namespace lorvane::test {

// From VARDetermin with the present d(t): order p, then the Granger zeros at the given (i, j)
// places, then VARSUR.
inline void SpecifyToVARSUR(TestModule& test, int p,
                            const std::vector<std::pair<int, int>>& zeros = {}) {
    Module& module = test.module();
    module.Click("VARDetermin", "Command5");
    for (int order = 1; order < p; ++order) {
        module.Click("VAR2", "Command2");
    }
    module.Click("VAR2", "Command5");
    int row = 1;
    int column = 1;
    for (const auto& [i, j] : zeros) {
        for (; row < i; ++row) {
            module.Click("VAR3", "RowUp");
        }
        for (; row > i; --row) {
            module.Click("VAR3", "RowDown");
        }
        for (; column < j; ++column) {
            module.Click("VAR3", "ColumnUp");
        }
        for (; column > j; --column) {
            module.Click("VAR3", "ColumnDown");
        }
        module.Click("VAR3", "Command3");
    }
    module.Click("VAR3", "Command1");
}

// The example data, three log-differences, t = 2..76, intercept only, VAR(2).
inline void WalkE1ToVARSUR(TestModule& test, const std::vector<std::pair<int, int>>& zeros = {}) {
    WalkToVARDetermin(test);
    SpecifyToVARSUR(test, 2, zeros);
}

// The example VAR(2) estimated by OLS with the FIML variance of L, on the joint tests.
inline void WalkE1ToVWaldT2(TestModule& test) {
    WalkE1ToVARSUR(test);
    for (const char* button : {"Command3", "Command5", "Command1"}) {
        test.module().Click("VARSUR", button);
    }
    ASSERT_EQ(test.module().CurrentScreen, "VWaldT2");
}

// A CSV data set without dates: the variables at the given columns (0-based), the whole
// sample, intercept only, VAR(p).
inline void WalkCsvToVARSUR(TestModule& test, const std::string& csv,
                            const std::vector<int>& columns, int p,
                            const std::vector<std::pair<int, int>>& zeros = {}) {
    StartWith(test, csv);
    Module& module = test.module();
    for (const int column : columns) {
        module.DoubleClick("SelVar1", "List2", column);
    }
    module.Click("SelVar1", "Command1");
    module.Click("SELOBS", "SubsetNo");
    module.Click("SELOBS", "SubsetNo");
    module.Click("SELOBS", "Continue");
    module.Click("SelvarYInfo", "Command1");
    SpecifyToVARSUR(test, p, zeros);
}

// A CSV text with named columns, from column vectors of equal length.
inline std::string CsvOf(const std::vector<std::string>& names,
                         const std::vector<std::vector<double>>& columns) {
    std::string csv;
    for (std::size_t j = 0; j < names.size(); ++j) {
        csv += (j == 0 ? "" : ",") + names[j];
    }
    csv += "\n";
    for (std::size_t t = 0; t < columns[0].size(); ++t) {
        for (std::size_t j = 0; j < columns.size(); ++j) {
            csv += (j == 0 ? "" : ",") + ShortestText(columns[j][t]);
        }
        csv += "\n";
    }
    return csv;
}

// A stable three-variable VAR(1) path of length n from a fixed congruential sequence, scaled.
inline std::vector<std::vector<double>> SimulatedVar(int n, double scale) {
    unsigned long long state = 2024;
    auto shock = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5;
    };
    std::vector<std::vector<double>> columns(3, std::vector<double>(static_cast<std::size_t>(n)));
    double a = 0;
    double b = 0;
    double c = 0;
    for (int t = 0; t < n; ++t) {
        const double na = 0.5 * a + 0.1 * b + shock();
        const double nb = 0.2 * a + 0.3 * b - 0.1 * c + shock();
        const double nc = 0.1 * a + 0.4 * c + shock();
        a = na;
        b = nb;
        c = nc;
        columns[0][static_cast<std::size_t>(t)] = a * scale;
        columns[1][static_cast<std::size_t>(t)] = b * scale;
        columns[2][static_cast<std::size_t>(t)] = c * scale;
    }
    return columns;
}

// The lines of a text joined with CR LF; a last line end gives no empty last line.
inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find("\r\n", start);
        if (end == std::string::npos) {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    return lines;
}

// The numbers of a work file, from its line `first` (0-based) on, as the comma reader gives them.
inline std::vector<double> NumbersOf(const std::filesystem::path& file, std::size_t first) {
    TextInput input(file);
    std::vector<double> values;
    for (std::size_t line = 0; line < first; ++line) {
        input.ReadLine();
    }
    while (!input.AtEnd()) {
        values.push_back(input.ReadNumber());
    }
    return values;
}

inline void ExpectRelative(double actual, double expected, double tolerance,
                           const std::string& what) {
    EXPECT_NEAR(actual, expected, tolerance * std::max(std::abs(expected), 1e-300)) << what;
}

} // namespace lorvane::test
