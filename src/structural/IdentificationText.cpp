#include "structural/IdentificationText.h"

#include <algorithm>

#include "frame/NumberText.h"
#include "numeric/DISTRIB.h"
#include "structural/StructuralReport.h"

namespace lorvane {

namespace {

constexpr const char* LineEnd = "\r\n";

std::string Line(const std::string& text) {
    return text + LineEnd;
}

std::string WholeText(int value) {
    return TrimLeft(NumberToText(value));
}

// The words that follow a count: "" for one, "s" for more.
std::string Ending(int count) {
    return count == 1 ? "" : "s";
}

} // namespace

std::string ModelHeadText(const std::vector<std::string>& names) {
    std::string text = Line("Structural model:") + LineEnd + Line("A.u = C.e,") + LineEnd +
                       Line("where C is a diagonal matrix, u is the vector with components") +
                       LineEnd;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += Line("u(" + WholeText(static_cast<int>(i) + 1) + ") = " + Trim(names[i]));
    }
    return text + Line("and e is a vectors of innovations.") + LineEnd;
}

std::string MomentMatrixText(const Matrix& matrix) {
    return MatrixText(matrix, "0.00000E+00", 15);
}

std::string BNameText(const TextMatrix& Bname) {
    std::string text;
    for (int i = 1; i <= Bname.Size(); ++i) {
        for (int j = 1; j <= Bname.Size(); ++j) {
            text += RightAligned(Bname(i, j), 6);
        }
        text += LineEnd;
    }
    return text;
}

std::string MomentConditionsText(const TextMatrix& Bname, const TextMatrix& Moment,
                                 const Matrix& VarUInverse) {
    const int k = Moment.Size();
    std::vector<std::size_t> ColumnWidth(static_cast<std::size_t>(k) + 1, 0);
    for (int j = 1; j <= k; ++j) {
        for (int i = 1; i <= k; ++i) {
            ColumnWidth[static_cast<std::size_t>(j)] =
                std::max(ColumnWidth[static_cast<std::size_t>(j)], Moment(i, j).size());
        }
    }
    std::string text = Line("(C^-1)A = B is a matrix with elements") + LineEnd + BNameText(Bname) +
                       LineEnd + Line("Identification of the structural model can be verified") +
                       Line("from the moment conditions: ") + LineEnd + Line("B'B =") + LineEnd;
    for (int i = 1; i <= k; ++i) {
        std::string row;
        for (int j = 1; j <= k; ++j) {
            std::string element = Moment(i, j);
            element.resize(std::max(element.size(), ColumnWidth[static_cast<std::size_t>(j)]), ' ');
            row += (j > 1 ? " " : "") + element;
        }
        text += Line(row);
    }
    return text + LineEnd + Line("=") + LineEnd + MomentMatrixText(VarUInverse) + LineEnd +
           Line("= inverse of the variance matrix of u(t)") + LineEnd +
           Line("This is a system of quadratic equations in the non-zero elements of B:") + LineEnd;
}

std::string SystemLinesText(const TextMatrix& Moment, const Matrix& rounded, Int16& StarCount) {
    std::string text;
    StarCount = 0;
    for (int i = 1; i <= Moment.Size(); ++i) {
        for (int j = 1; j <= i; ++j) {
            std::string line = Moment(i, j) + " = " + TrimLeft(NumberToText(rounded(i, j)));
            if (Moment(i, j) == "0") {
                line += " (*)";
                ++StarCount;
            }
            text += Line(line);
        }
    }
    return text;
}

std::string StarNoteText(int StarCount) {
    return std::string(LineEnd) +
           Line(StarCount == 1
                    ? "(*) This moment restriction cannot be used for identification, "
                    : "(*) These moment restrictions cannot be used for identification, ") +
           Line("    but will be tested.");
}

std::string StarTestText(double statistic, Int16 StarCount) {
    std::string pLine;
    std::string levelLine;
    std::string criticalLine;
    std::string conclusionLine;
    ChiSquareReport(statistic, StarCount, pLine, levelLine, criticalLine, conclusionLine);
    return Line("Wald test of the hypothesis that the moment restriction" + Ending(StarCount) +
                " (*) hold" + ":") +
           LineEnd +
           Line("Chi-square(" + WholeText(StarCount) +
                ") test statistic: " + TrimLeft(FormatNumber(statistic, "#############0.000"))) +
           LineEnd + Line(pLine) + Line(levelLine) + Line(criticalLine) + Line(conclusionLine) +
           LineEnd;
}

std::string CountVerdictText(int k, int ParameterCount, int EquationCount, bool& goOn) {
    const int M = (k * k + k) / 2;
    const int P = ParameterCount;
    goOn = true;
    if (M < P || EquationCount < P) {
        goOn = false;
        return Line("Structural model is underidentified. There are more parameters than ") +
               Line("moment restrictions. Try again.");
    }
    if (M > P) {
        return Line("Structural model is overidentified.");
    }
    return Line("Structural model seems just identified, since the number of unknown ") +
           Line("parameters is equal to the number of moment conditions. However, ") +
           Line("the latter is no guarantee that the system is solvable!");
}

} // namespace lorvane
