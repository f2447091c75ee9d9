// The answers do not depend on the units of the data. Roads through the screens run on data
// multiplied by powers of ten (the example data's growth rates from 10^-4 to 10^9, their levels
// up to 10^11, one series in percent beside another in thousandths, six small growth rates), and
// what they print is compared with the run on the data as they are: t-values, p-values, Wald
// statistics and decompositions print the same; intercepts, variances, L, responses and their
// standard errors are scaled; criteria and log-likelihoods are shifted by the logarithm of the
// power of ten. The nonstructural road takes the criteria, OLS, SUR rounds, FIML, a Wald test,
// the responses with standard errors and the decomposition; the structural road the moment
// method with its variances and tests.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "estimate/EstimateRoad.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "support/E1Road.h"
#include "support/TestModule.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::TestModule;

// The CSV text with every number of column c multiplied by 10^powers[c] (0 beyond the list),
// by moving the point in the text: "0.0557" becomes "0.0557E-4", "5.5e-06" becomes "5.5E-10".
// Empty cells stay empty.
std::string ScaledCsv(const std::string& csv, const std::vector<int>& powers) {
    std::string result;
    std::size_t start = 0;
    bool header = true;
    while (start < csv.size()) {
        std::size_t end = csv.find('\n', start);
        if (end == std::string::npos) {
            end = csv.size();
        }
        std::string line = csv.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        start = end + 1;
        if (header) {
            result += line + "\n";
            header = false;
            continue;
        }
        std::string scaled;
        std::size_t column = 0;
        std::size_t cell = 0;
        while (true) {
            const std::size_t comma = line.find(',', cell);
            const std::string text =
                line.substr(cell, comma == std::string::npos ? std::string::npos : comma - cell);
            scaled += column == 0 ? "" : ",";
            const int power = column < powers.size() ? powers[column] : 0;
            if (power != 0 && !text.empty()) {
                const std::size_t e = text.find_first_of("eE");
                const int exponent = e == std::string::npos ? 0 : std::stoi(text.substr(e + 1));
                scaled += text.substr(0, e) + "E" + std::to_string(exponent + power);
            } else {
                scaled += text;
            }
            ++column;
            if (comma == std::string::npos) {
                break;
            }
            cell = comma + 1;
        }
        result += scaled + "\n";
    }
    return result;
}

// All numbers of the columns from `first` on times 10^s.
std::string ScaledCsv(const std::string& csv, int s, int first) {
    std::vector<int> powers(static_cast<std::size_t>(first), 0);
    powers.resize(64, s);
    return ScaledCsv(csv, powers);
}

// A road through the screens.
struct Road {
    std::string csv;
    bool e1Sample = false; // t = 2..76 of the example data; otherwise the whole sample
    std::vector<int> items;
    int p = 2;
    std::vector<std::pair<int, int>> zeros;
    int surRounds = 0;
    std::vector<int> waldRows;
};

// What the road printed: the output log and the Wald test's results.
struct Printed {
    std::string log;
    std::string wald;
};

void SetZeros(Module& module, const std::vector<std::pair<int, int>>& zeros) {
    int row = 1;
    int column = 1;
    for (const auto& [i, j] : zeros) {
        for (; row < i; ++row) {
            module.Click("VAR3", "RowUp");
        }
        for (; column < j; ++column) {
            module.Click("VAR3", "ColumnUp");
        }
        for (; column > j; --column) {
            module.Click("VAR3", "ColumnDown");
        }
        module.Click("VAR3", "Command3");
    }
}

// From the start to the fork of VARSTR1: the selection, the order with the criteria, the zeros,
// OLS, the SUR rounds, FIML and the Wald test of VWaldT2, whose results go to `wald`.
void WalkToVARSTR1(TestModule& test, const Road& road, std::string& wald) {
    test::StartWith(test, road.csv);
    Module& module = test.module();
    for (const int item : road.items) {
        module.DoubleClick("SelVar1", "List2", item);
    }
    module.Click("SelVar1", "Command1");
    if (road.e1Sample) {
        test::ChooseE1Sample(module);
    } else {
        module.Click("SELOBS", "SubsetNo");
        module.Click("SELOBS", "SubsetNo");
    }
    module.Click("SELOBS", "Continue");
    module.Click("SelvarYInfo", "Command1");
    module.Click("VARDetermin", "Command5");
    for (int order = 1; order < road.p; ++order) {
        module.Click("VAR2", "Command2");
    }
    Ctl(module, "VAR2", "Check1").Value = 1;
    module.Click("VAR2", "Command5");
    module.Click("VAR2", "Command4");
    SetZeros(module, road.zeros);
    module.Click("VAR3", "Command1");
    module.Click("VARSUR", "Command3");
    for (int round = 0; round < road.surRounds; ++round) {
        module.Click("VARSUR", "Command4");
    }
    module.Click("VARSUR", "Command5");
    // FIML found the variance of L.
    EXPECT_EQ(Ctl(module, "VARSUR", "Text6").Caption, "1");
    module.Click("VARSUR", "Command1");
    ASSERT_EQ(module.CurrentScreen, "VWaldT2");
    for (const int row : road.waldRows) {
        module.DoubleClick("VWaldT2", "List1", row);
    }
    module.Click("VWaldT2", "Command1");
    wald = Ctl(module, "VWaldT2", "Text1").Caption;
    module.Click("VWaldT2", "Command2");
}

// From VARIR2: the responses with their standard errors and the decomposition, both stored.
void WalkInnovations(Module& module) {
    module.Click("VARIR2", "Command1");
    Ctl(module, "VARIR2", "Check1").Value = 1;
    module.Click("VARIR2", "Command3");
    Ctl(module, "VARDECOMP", "Check1").Value = 1;
    module.Click("VARDECOMP", "Command1");
}

// No run-time error, no singular matrix and no failed decomposition on the way.
void ExpectCleanRoad(TestModule& test) {
    Module& module = test.module();
    EXPECT_FALSE(module.Failure().has_value())
        << (module.Failure() ? module.Failure()->MessageText() : "");
    EXPECT_EQ(module.CurrentScreen, "VIRPlot2");
    EXPECT_TRUE(test.dialogs().Shown().empty());
}

Printed Walk(const Road& road) {
    TestModule test;
    Printed printed;
    WalkToVARSTR1(test, road, printed.wald);
    Module& module = test.module();
    if (module.CurrentScreen == "VARSTR1") {
        module.Click("VARSTR1", "Command1");
        WalkInnovations(module);
    }
    ExpectCleanRoad(test);
    printed.log = test::ReadFile(module.DataFile("OUTPUT.TXT"));
    return printed;
}

// A printed number: its value and the value of its last digit.
struct PrintedNumber {
    std::string text;
    double value;
    double unit;
};

const std::regex& NumberPattern() {
    static const std::regex number(R"([-+]?(\d+\.?\d*|\.\d+)([Ee][-+]?\d+)?)");
    return number;
}

std::vector<PrintedNumber> Numbers(const std::string& line) {
    std::vector<PrintedNumber> numbers;
    for (auto it = std::sregex_iterator(line.begin(), line.end(), NumberPattern());
         it != std::sregex_iterator(); ++it) {
        const std::string text = it->str();
        const std::string mantissa = (*it)[1].str();
        const std::size_t point = mantissa.find('.');
        const int decimals =
            point == std::string::npos ? 0 : static_cast<int>(mantissa.size() - point - 1);
        const int exponent = (*it)[2].matched ? std::stoi((*it)[2].str().substr(1)) : 0;
        numbers.push_back({text, std::stod(text), std::pow(10.0, exponent - decimals)});
    }
    return numbers;
}

// The line without its numbers and with single blanks.
std::string Skeleton(const std::string& line) {
    static const std::regex blanks(" +");
    return Trim(std::regex_replace(std::regex_replace(line, NumberPattern(), "#"), blanks, " "));
}

// How a printed number changes with data multiplied by 10^s: not at all, by the factor
// 10^(power s), or by an added constant.
struct Change {
    int power = 0;
    double shift = 0;
    bool exact = true; // the same text
    bool skipped = false;
};

constexpr Change Same{};
// Numbers whose change depends on which variables they link are not compared when the
// variables were scaled by different powers.
constexpr Change Skipped{0, 0, false, true};
Change Shifted(double shift) {
    return {0, shift, false};
}

// A number printed on the data as they are (x) and on the data times 10^s (y): the same text,
// or the same value at the precision of both prints once the change is undone.
void ExpectChanged(const PrintedNumber& x, const PrintedNumber& y, const Change& change, int s,
                   const std::string& where) {
    if (change.skipped) {
        return;
    }
    if (change.exact) {
        EXPECT_EQ(y.text, x.text) << where;
        return;
    }
    const double factor = std::pow(10.0, -change.power * s);
    EXPECT_NEAR((y.value - change.shift) * factor, x.value,
                0.5 * x.unit + 0.5 * y.unit * factor + 1e-9 * x.unit)
        << where;
}

// How the data of a run were scaled: the power of ten of each of the road's variables, and the
// number T of observations of the estimation, for the shifts of the log-likelihoods.
struct Scaling {
    std::vector<int> powers;
    double T;

    int Sum() const {
        int sum = 0;
        for (const int power : powers) {
            sum += power;
        }
        return sum;
    }
    bool Uniform() const {
        for (const int power : powers) {
            if (power != powers.front()) {
                return false;
            }
        }
        return true;
    }
};

// The same power s for k variables.
Scaling Every(int k, int s, double T) {
    return {std::vector<int>(static_cast<std::size_t>(k), s), T};
}

// Compares the text printed on the data as they are with the text printed on the scaled data,
// line by line, following the sections of the report.
void ExpectSameAnswers(const std::string& base, const std::string& scaled, const Scaling& scaling,
                       const std::string& what) {
    const std::vector<std::string> a = test::Lines(base);
    const std::vector<std::string> b = test::Lines(scaled);
    ASSERT_EQ(a.size(), b.size()) << what;
    const double ln10 = std::log(10.0);
    const int s = scaling.powers.front();
    const auto Scaled = [&scaling](int power) {
        return scaling.Uniform() ? Change{power, 0, false} : Skipped;
    };
    enum class Section { Other, Criteria, Sigma, Factor, Fiml, Responses };
    Section section = Section::Other;
    int factorRows = 0;
    for (std::size_t n = 0; n < a.size(); ++n) {
        const std::string& line = a[n];
        if (line == "Information criteria:") {
            section = Section::Criteria;
        } else if (line.starts_with("p =") || line.empty()) {
            section =
                section == Section::Fiml || section == Section::Sigma ? section : Section::Other;
        }
        if (line.starts_with("Error variance matrix based on")) {
            section = Section::Sigma;
        } else if (line.starts_with("= LL', where L =")) {
            section = Section::Factor;
            factorRows = static_cast<int>(scaling.powers.size());
        } else if (line == "L = ") {
            section = Section::Fiml;
        } else if (line.starts_with("(t-values in parenthesis)")) {
            section = Section::Other;
        } else if (line.starts_with("Response of ")) {
            section = Section::Responses;
        }

        const std::vector<PrintedNumber> x = Numbers(line);
        const std::vector<PrintedNumber> y = Numbers(b[n]);
        ASSERT_EQ(Skeleton(line), Skeleton(b[n])) << what << " line " << n;
        ASSERT_EQ(x.size(), y.size()) << what << " line " << n;
        // The change of each number of the line.
        std::vector<Change> changes(x.size(), Same);
        const bool tableRow = (line.starts_with("x(") || line.starts_with("(*)x(")) &&
                              line.find(" = ") != std::string::npos;
        if (line.find("Minimum value:") != std::string::npos ||
            line.find("Maximum value:") != std::string::npos ||
            line.find("Sample mean:") != std::string::npos || line.starts_with("s.e.:") ||
            line.starts_with("the corresponding elements of the previous matrix L:")) {
            changes.back() = Scaled(1);
        } else if (line.starts_with("Log-likelihood:")) {
            changes.back() = Shifted(-scaling.T * scaling.Sum() * ln10);
        } else if (section == Section::Criteria && x.size() == 4) {
            for (std::size_t t = 1; t < x.size(); ++t) {
                changes[t] = Shifted(2.0 * scaling.Sum() * ln10);
            }
        } else if (tableRow && x.size() >= 2) {
            // The name column of 41 characters, the estimate, the t-value: only the
            // intercept's estimate has units.
            const std::size_t row = line.find("x(");
            const std::size_t name = line.find(" = ", row) + 3;
            const bool intercept = Trim(line.substr(name, row + 41 - name)) == "1";
            changes[x.size() - 2] = Scaled(intercept ? 1 : 0);
        } else if (section == Section::Sigma && !line.empty() &&
                   !line.starts_with("Error variance")) {
            changes.assign(x.size(), Scaled(2));
        } else if (section == Section::Factor && factorRows > 0 && !line.starts_with("= LL'")) {
            changes.assign(x.size(), Scaled(1));
            --factorRows;
        } else if (section == Section::Fiml && line.find('(') == std::string::npos &&
                   line.find('[') == std::string::npos) {
            changes.assign(x.size(), Scaled(1));
        } else if (section == Section::Responses && x.size() == 3) {
            changes[1] = Scaled(1);
            changes[2] = Scaled(1);
        }

        for (std::size_t t = 0; t < x.size(); ++t) {
            ExpectChanged(x[t], y[t], changes[t], s,
                          what + " line " + std::to_string(n) + ": " + line + " | " + b[n]);
        }
    }
}

void ExpectSameRoad(const Road& road, const Printed& base, const Printed& scaled,
                    const Scaling& scaling, const std::string& what) {
    ExpectSameAnswers(base.log, scaled.log, scaling, what + " (log)");
    ExpectSameAnswers(base.wald, scaled.wald, scaling, what + " (Wald test)");
    EXPECT_FALSE(road.waldRows.size() > 1 && base.wald.find("Wald test:") == std::string::npos)
        << what;
}

Road E1Road(const std::string& csv) {
    Road road;
    road.csv = csv;
    road.e1Sample = true;
    road.items = {3, 4, 5};
    road.waldRows = {1, 4};
    return road;
}

// The example data's three growth rates, VAR(2) with an intercept on t = 2..76: 73 observations.
Scaling E1Scaling(int s) {
    return Every(3, s, 73);
}

TEST(Units, TheExampleRoadInEveryPowerOfTen) {
    const std::string e1 = test::E1Csv();
    const Printed base = Walk(E1Road(e1));
    for (int s = -4; s <= 9; ++s) {
        if (s == 0) {
            continue;
        }
        const Road road = E1Road(ScaledCsv(e1, s, 1));
        ExpectSameRoad(road, base, Walk(road), E1Scaling(s), "10^" + std::to_string(s));
    }
}

TEST(Units, GrangerZerosAndSurRoundsInEveryPowerOfTen) {
    const std::string e1 = test::E1Csv();
    const auto restricted = [](const std::string& csv) {
        Road road = E1Road(csv);
        road.zeros = {{2, 1}, {3, 1}};
        road.surRounds = 3;
        return road;
    };
    const Printed base = Walk(restricted(e1));
    for (const int s : {-4, -2, 3, 6, 9}) {
        const Road road = restricted(ScaledCsv(e1, s, 1));
        ExpectSameRoad(road, base, Walk(road), E1Scaling(s), "10^" + std::to_string(s));
    }
}

TEST(Units, LevelsInEveryPowerOfTen) {
    // The example data in levels, whole numbers in the hundreds: times 10^9 and 10^11 their
    // moments come near the end of the decimal range. (Divided, they would no longer be whole
    // numbers, which the report of the variables tells.)
    const std::string e1 = test::E1Csv();
    const auto levels = [](const std::string& csv) {
        Road road = E1Road(csv);
        road.items = {0, 1, 2};
        return road;
    };
    const Printed base = Walk(levels(e1));
    for (const int s : {1, 5, 9, 11}) {
        const Road road = levels(ScaledCsv(e1, s, 1));
        // The levels begin a quarter before the growth rates: one observation more.
        ExpectSameRoad(road, base, Walk(road), Every(3, s, 74), "levels 10^" + std::to_string(s));
    }
}

TEST(Units, OneSeriesInPercentAnotherInThousandths) {
    // dlinvest (column 4) times 100, dlcons (column 6) times 0.001: the t-values, p-values,
    // Wald statistics and decompositions stay, the criteria and log-likelihoods move by the sum
    // of the powers.
    const std::string e1 = test::E1Csv();
    const Printed base = Walk(E1Road(e1));
    const Road road = E1Road(ScaledCsv(e1, {0, 0, 0, 0, 2, 0, -3}));
    ExpectSameRoad(road, base, Walk(road), {{2, 0, -3}, 73}, "percent and thousandths");
}

// Six quarterly growth rates whose errors have a standard deviation of about 0.3 %: the
// determinant of their error variance is near 1E-30.
std::string SmallGrowthRates() {
    std::uint64_t state = 1906;
    const auto shock = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return (static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5) * 0.01;
    };
    constexpr int k = 6;
    std::vector<std::vector<double>> columns(k, std::vector<double>(100));
    std::vector<double> y(k, 0.005);
    for (std::size_t t = 0; t < 100; ++t) {
        std::vector<double> next(k);
        for (int i = 0; i < k; ++i) {
            const auto at = static_cast<std::size_t>(i);
            next[at] = 0.004 + 0.3 * y[at] + 0.1 * y[static_cast<std::size_t>((i + 1) % k)] +
                       shock() + 0.3 * shock();
        }
        y = next;
        for (int i = 0; i < k; ++i) {
            columns[static_cast<std::size_t>(i)][t] = y[static_cast<std::size_t>(i)];
        }
    }
    return test::CsvOf({"g1", "g2", "g3", "g4", "g5", "g6"}, columns);
}

TEST(Units, SixSmallGrowthRates) {
    const auto road = [](const std::string& csv) {
        Road small;
        small.csv = csv;
        small.items = {0, 1, 2, 3, 4, 5};
        small.p = 1;
        small.waldRows = {0, 1, 2};
        return small;
    };
    const std::string csv = SmallGrowthRates();
    const Printed base = Walk(road(csv));
    EXPECT_NE(base.log.find("Information criteria:"), std::string::npos);
    for (const int s : {-3, 2, 5}) {
        const Road scaled = road(ScaledCsv(csv, s, 0));
        ExpectSameRoad(scaled, base, Walk(scaled), Every(6, s, 99),
                       "six series 10^" + std::to_string(s));
    }
}

// What the structural road by the moment method printed.
struct StructuralPrinted {
    std::string report; // VBernanke2
    std::string wald;   // VWaldT3
    std::string responses;
    std::string decomposition;
};

// The over-identified model of the example data (the third variable does not react to the
// second) after FIML: the variance of its coefficients and the test of its over-identifying
// moment, B^-1 with its t-values and log-likelihood, method 1, the joint test of the two
// coefficients, the responses with their standard errors and the decomposition.
StructuralPrinted WalkStructural(const std::string& csv) {
    TestModule test;
    StructuralPrinted printed;
    WalkToVARSTR1(test, E1Road(csv), printed.wald);
    Module& module = test.module();
    module.Click("VARSTR1", "Command2");
    for (const std::vector<int>& rows : std::vector<std::vector<int>>{{}, {0}, {0}}) {
        for (const int row : rows) {
            module.DoubleClick("VBernanke1", "List2", row);
        }
        module.Click("VBernanke1", "Command1");
    }
    printed.report = Ctl(module, "VBernanke2", "Text1").Caption;
    module.Click("VBernanke2", "Command1");
    EXPECT_EQ(module.CurrentScreen, "VWaldT3");
    module.DoubleClick("VWaldT3", "List1", 0);
    module.DoubleClick("VWaldT3", "List1", 1);
    module.Click("VWaldT3", "Command1");
    printed.wald = Ctl(module, "VWaldT3", "Text1").Caption;
    module.Click("VWaldT3", "Command2");
    module.Click("VARIR2", "Command1");
    printed.responses = Ctl(module, "VARIR2", "Text2").Caption;
    Ctl(module, "VARIR2", "Check1").Value = 1;
    module.Click("VARIR2", "Command3");
    printed.decomposition = Ctl(module, "VARDECOMP", "Text1").Caption;
    Ctl(module, "VARDECOMP", "Check1").Value = 1;
    module.Click("VARDECOMP", "Command1");
    ExpectCleanRoad(test);
    return printed;
}

// The structural report: t-values, p-values and the test of the over-identifying moment print
// the same, coefficients of other variables the same at the printed precision, the innovations'
// coefficients are scaled and the log-likelihood is shifted. The moments and the solution of the
// moment system are taken in single precision on the way, so their digits beyond the seventh
// follow the units; they are not compared.
void ExpectSameStructuralReport(const std::string& base, const std::string& scaled, int s,
                                const std::string& what) {
    const std::vector<std::string> a = test::Lines(base);
    const std::vector<std::string> b = test::Lines(scaled);
    ASSERT_EQ(a.size(), b.size()) << what;
    static const std::regex coefficient(R"(^ +[-+]\d*\.\d+ x .*)");
    for (std::size_t n = 0; n < a.size(); ++n) {
        const std::string& line = a[n];
        ASSERT_EQ(Skeleton(line), Skeleton(b[n])) << what << " line " << n;
        const std::vector<PrintedNumber> x = Numbers(line);
        const std::vector<PrintedNumber> y = Numbers(b[n]);
        const std::string trimmed = Trim(line);
        std::vector<Change> changes;
        if (line.starts_with("Log-likelihood:")) {
            changes = {Shifted(-E1Scaling(s).T * E1Scaling(s).Sum() * std::log(10.0))};
        } else if (trimmed.starts_with("(") || trimmed.starts_with("[") ||
                   line.find("Chi-square(") != std::string::npos ||
                   line.find("p-value") != std::string::npos) {
            changes.assign(x.size(), Same);
        } else if (std::regex_match(line, coefficient)) {
            changes = {Change{line.ends_with(" x Innovation") ? 1 : 0, 0, false}};
        }
        for (std::size_t t = 0; t < changes.size(); ++t) {
            ExpectChanged(x[t], y[t], changes[t], s,
                          what + " line " + std::to_string(n) + ": " + line + " | " + b[n]);
        }
    }
}

TEST(Units, TheStructuralRoadInEveryPowerOfTen) {
    const std::string e1 = test::E1Csv();
    const StructuralPrinted base = WalkStructural(e1);
    ASSERT_NE(base.report.find("Log-likelihood: "), std::string::npos);
    for (int s = -4; s <= 9; ++s) {
        if (s == 0) {
            continue;
        }
        const std::string what = "structural 10^" + std::to_string(s);
        const StructuralPrinted scaled = WalkStructural(ScaledCsv(e1, s, 1));
        ExpectSameStructuralReport(base.report, scaled.report, s, what);
        ExpectSameAnswers(base.wald, scaled.wald, E1Scaling(s), what + " (Wald test)");
        ExpectSameAnswers(base.responses, scaled.responses, E1Scaling(s), what + " (responses)");
        ExpectSameAnswers(base.decomposition, scaled.decomposition, E1Scaling(s),
                          what + " (decomposition)");
    }
}

} // namespace
} // namespace lorvane
