#include "estimate/WaldTest.h"

#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "numeric/DISTRIB.h"
#include "numeric/Matsubs.h"

namespace lorvane {

namespace {

// T, the count n, the n rows and the n values. The file must hold them and one variance
// matrix; a count below 1 would leave nothing to test and nothing to read.
ParameterFile ReadParameterHead(TextInput& input, int fewest) {
    ParameterFile parameters;
    parameters.T = input.ReadNumber();
    const int n = input.ReadCount(fewest);
    input.ExpectFields(2LL * n + static_cast<long long>(n) * n);
    for (int q = 1; q <= n; ++q) {
        parameters.rows.push_back(input.ReadField());
    }
    parameters.values.Resize(n);
    for (int q = 1; q <= n; ++q) {
        parameters.values(q) = input.ReadNumber();
    }
    return parameters;
}

void ReadVariance(TextInput& input, ParameterFile& parameters) {
    const int n = static_cast<int>(parameters.rows.size());
    Matrix& variance = parameters.variances.emplace_back(n, n);
    for (int r = 1; r <= n; ++r) {
        for (int c = 1; c <= n; ++c) {
            variance(r, c) = input.ReadNumber();
        }
    }
}

} // namespace

ParameterFile ReadParameterFile(const std::filesystem::path& file) {
    TextInput input(file);
    ParameterFile parameters = ReadParameterHead(input, 1);
    do {
        ReadVariance(input, parameters);
    } while (!input.AtEnd());
    return parameters;
}

ParameterFile ReadFirstParameterSet(const std::filesystem::path& file, int fewest) {
    TextInput input(file);
    ParameterFile parameters = ReadParameterHead(input, fewest);
    ReadVariance(input, parameters);
    return parameters;
}

ParameterFile ReadStructuralParameterFile(const std::filesystem::path& file) {
    return ReadFirstParameterSet(file, 1);
}

double WaldStatistic(double T, const Vector& values, const Matrix& variance,
                     const std::vector<int>& selected, int& flag) {
    const int s = static_cast<int>(selected.size());
    Matrix block(s, s);
    Vector c(s);
    for (int r = 1; r <= s; ++r) {
        const int q = selected[static_cast<std::size_t>(r - 1)];
        c(r) = values(q);
        for (int m = 1; m <= s; ++m) {
            block(r, m) = variance(q, selected[static_cast<std::size_t>(m - 1)]);
        }
    }
    Matrix inverse(s, s);
    double determinant = 0;
    Int16 failed;
    InvertMatrix(block, inverse, determinant, s, failed);
    flag = failed;
    if (flag == 1) {
        return 0;
    }
    double quadratic = 0;
    for (int r = 1; r <= s; ++r) {
        for (int m = 1; m <= s; ++m) {
            quadratic += c(r) * inverse(r, m) * c(m);
        }
    }
    return T * quadratic;
}

std::vector<std::string> WaldTestLines(double T, const Vector& values, const Matrix& variance,
                                       const std::vector<int>& selected) {
    int flag = 0;
    const double statistic = WaldStatistic(T, values, variance, selected, flag);
    if (flag == 1) {
        return {"Test cannot be conducted, due to near singularity",
                "of the variance matrix of the parameters involved!"};
    }
    const Int16 df = static_cast<int>(selected.size());
    std::vector<std::string> lines = {
        "Wald test:                   " +
            RightAligned(FormatNumber(statistic, "##########.00"), 15),
        "Asymptotic null distribution:Chi-square(" + Trim(NumberToText(df)) + ")"};
    std::string pLine;
    std::string levelLine;
    std::string criticalLine;
    std::string conclusionLine;
    ChiSquareReport(statistic, df, pLine, levelLine, criticalLine, conclusionLine);
    for (const std::string* line : {&pLine, &levelLine, &criticalLine, &conclusionLine}) {
        lines.push_back("  " + *line);
    }
    return lines;
}

} // namespace lorvane
