#include "innovation/Decomposition.h"

#include <cmath>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

namespace lorvane {

namespace {

constexpr std::size_t ColumnWidth = 4;
constexpr const char* Contribution = "Contribution (%) of the innovation in";

// Right-aligned in a column of four; a longer text keeps its rightmost four characters.
std::string Column(const std::string& text) {
    const std::string aligned = RightAligned(text, ColumnWidth);
    return aligned.substr(aligned.size() - ColumnWidth);
}

} // namespace

Responses DecompositionShares(const Responses& psi) {
    const int n = psi.Size();
    const int H = psi.Horizon();
    Responses shares(n, H);
    Responses cumulated(n, H);
    std::vector<double> total(static_cast<std::size_t>(H) + 1, 0.0);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            for (int h = 0; h <= H; ++h) {
                if (j == 1) {
                    total[static_cast<std::size_t>(h)] = 0;
                }
                const double square = std::pow(psi(i, j, h), 2.0);
                cumulated(i, j, h) = h == 0 ? square : cumulated(i, j, h - 1) + square;
                total[static_cast<std::size_t>(h)] += cumulated(i, j, h);
            }
        }
        for (int h = 0; h <= H; ++h) {
            for (int j = 1; j <= n; ++j) {
                shares(i, j, h) =
                    100 * CheckedDivide(cumulated(i, j, h), total[static_cast<std::size_t>(h)]);
            }
        }
    }
    return shares;
}

std::vector<std::string> DecompositionLines(const Responses& shares,
                                            const std::vector<std::string>& names) {
    const int n = shares.Size();
    const int H = shares.Horizon();
    std::vector<std::string> lines;
    for (int i = 1; i <= n; ++i) {
        lines.emplace_back("Forecast error variance decomposition of ");
        lines.push_back(names[static_cast<std::size_t>(i - 1)]);
        lines.emplace_back("Column 1: Horizon");
        for (int j = 1; j <= n; ++j) {
            const std::string column = "Column " + Trim(NumberToText(j + 1)) + ": ";
            lines.push_back(column + Contribution);
            lines.push_back(std::string(column.size(), ' ') +
                            names[static_cast<std::size_t>(j - 1)]);
        }
        std::string heading = Column("1");
        for (int j = 1; j <= n; ++j) {
            heading += Column(Trim(NumberToText(j + 1)));
        }
        lines.push_back(heading);
        lines.emplace_back(heading.size(), '-');
        for (int h = 0; h <= H; ++h) {
            std::string row = Column(FormatNumber(h, "###0"));
            for (int j = 1; j <= n; ++j) {
                row += Column(FormatNumber(shares(i, j, h), "###0"));
            }
            lines.push_back(row);
        }
        lines.emplace_back(" ");
    }
    return lines;
}

} // namespace lorvane
