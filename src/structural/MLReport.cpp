#include "structural/MLReport.h"

#include "frame/NumberText.h"
#include "structural/StructuralReport.h"

namespace lorvane {

namespace {

constexpr const char* LineEnd = "\r\n";
constexpr const char* Picture = "0.0000000E+00";
// The cells of the matrices: "0.0000000E+00" takes 13 characters and 14 with a minus sign, so
// the 12 columns that the cells were once given would glue the numbers together. Decision: 15
// columns, as the other matrices of the structural reports, so that a blank always parts them.
constexpr std::size_t CellWidth = 15;

std::string Line(const std::string& text) {
    return text + LineEnd;
}

std::string LogLikelihoodLines(double LL, double nonstructuralLL) {
    return Line("Log-Likelihood: " + FormatNumber(LL, Picture)) + LineEnd +
           Line("Log-Likelihood of the nonstructural VAR: " +
                FormatNumber(nonstructuralLL, Picture)) +
           LineEnd;
}

std::string MatrixLines(const std::string& heading, const Matrix& matrix) {
    return Line(heading) + MatrixText(matrix, Picture, CellWidth) + LineEnd;
}

} // namespace

std::string IterationLine(int option, double iteration, const std::vector<double>& vertex,
                          double value) {
    std::string line = "Iteration " + FormatNumber(iteration, "####0");
    line += option == 1 ? " Log-Likelihood:" + FormatNumber(-value, "00.000000E+000")
                        : " MAD:" + FormatNumber(value, "00.000000E+000");
    line += " Parameters:  ";
    for (const double element : vertex) {
        line += FormatNumber(element, "00.0000000E+000") + " ";
    }
    return line;
}

std::string SolutionLines(const std::vector<double>& b) {
    std::string text;
    for (std::size_t k = 1; k <= b.size(); ++k) {
        text += Line("b(" + TrimLeft(NumberToText(static_cast<double>(k))) +
                     ") = " + TrimLeft(FormatNumber(b[k - 1], Picture)));
    }
    return text;
}

std::string SimplexRunText(int option, const std::vector<double>& b, double LL,
                           double nonstructuralLL, const Matrix& BB, const Matrix& SInv,
                           std::optional<double> refinementGain) {
    std::string text = Line(option == 1 ? "Maximum Likelihood solution for b:"
                                        : "Method of Moment solution for b:");
    text += LineEnd;
    text += SolutionLines(b) + LineEnd;
    text += LogLikelihoodLines(LL, nonstructuralLL);
    if (refinementGain) {
        text += Line("The simplex result has been refined by Newton's method to the maximum,");
        text += Line("which raised the log-likelihood by " +
                     TrimLeft(FormatNumber(*refinementGain, Picture)) + ".");
        text += LineEnd;
    }
    text += MatrixLines("Matrix B'B:", BB);
    text += MatrixLines("which should be close to:", SInv);
    text += Line("It is recommended to restart the simplex iteration until the");
    text += Line("log-likelihood and the ML estimates do not change anymore.");
    return text;
}

std::string EstimateText(const std::vector<double>& b, double LL, double nonstructuralLL,
                         const Matrix& B, const Matrix& BB, const Matrix& SInv, double MAD) {
    std::string text = Line("Maximum Likelihood solution for b:") + LineEnd;
    text += SolutionLines(b) + LineEnd;
    text += LogLikelihoodLines(LL, nonstructuralLL);
    text += MatrixLines("Matrix B:", B);
    text += MatrixLines("Matrix B'B:", BB);
    text += MatrixLines("which should be close to:", SInv);
    text += Line("Maximum absolute deviation (MAD) of the corresponding entries = " +
                 TrimLeft(FormatNumber(MAD, Picture)));
    return text + LineEnd;
}

std::string BInverseText(const Matrix& BInv) {
    std::string text = Line("Matrix B^-1:");
    for (int i = 1; i <= BInv.Rows(); ++i) {
        for (int j = 1; j <= BInv.Cols(); ++j) {
            text +=
                RightAligned(BInv(i, j) == 0 ? "" : FormatNumber(BInv(i, j), Picture), CellWidth);
        }
        text += LineEnd;
    }
    return text + LineEnd;
}

std::string VarianceText(const std::string& heading, const Matrix& V) {
    std::string text = Line(heading);
    for (int i = 1; i <= V.Rows(); ++i) {
        for (int j = 1; j <= V.Cols(); ++j) {
            text += (j == 1 ? "" : " ") + FormatNumber(V(i, j), "0.00000E+00");
        }
        text += LineEnd;
    }
    return text + LineEnd;
}

} // namespace lorvane
