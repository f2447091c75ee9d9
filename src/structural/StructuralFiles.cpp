#include "structural/StructuralFiles.h"

#include <cmath>

#include "estimate/EstimationReport.h"
#include "estimate/WaldFileWriter.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"
#include "innovation/ResponseOutput.h"

namespace lorvane {

namespace {

constexpr std::size_t LabelWidth = 30;

std::string Whole(int value) {
    return Trim(NumberToText(value));
}

} // namespace

std::vector<FactorPlace> NonzeroPlaces(const Matrix& F) {
    std::vector<FactorPlace> places;
    for (int i = 1; i <= F.Rows(); ++i) {
        for (int j = 1; j <= F.Cols(); ++j) {
            if (F(i, j) != 0) {
                places.push_back({i, j});
            }
        }
    }
    return places;
}

void WriteFactorFiles(const Workspace& workspace, const Matrix& F) {
    const int k = F.Rows();
    TextOutput values(workspace.DataFile("VARL.TMP"), TextOutput::Mode::Output);
    values.WriteRecord(CommaRecord().Whole(k));
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            values.WriteRecord(CommaRecord().Number(F(i, j)));
        }
    }
    values.Close();

    TextOutput pattern(workspace.DataFile("VARLPAT.TMP"), TextOutput::Mode::Output);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            pattern.WriteRecord(CommaRecord().Whole(F(i, j) != 0 ? 1 : 0));
        }
    }
    pattern.Close();
}

void RewriteWaldFileWithFactor(const Workspace& workspace, const Matrix& F, const Vector& tF,
                               const Matrix& VarBInv) {
    double T = 0;
    const ParameterSet old = ReadParameterSet(workspace, T);
    // The coefficients keep their rows, values and variance; the old rows of L are dropped.
    std::vector<std::size_t> kept;
    for (std::size_t q = 0; q < old.rows.size(); ++q) {
        if (UpperCase(old.rows[q]).starts_with("X(")) {
            kept.push_back(q);
        }
    }
    ParameterSet coefficients;
    coefficients.variance.Resize(static_cast<int>(kept.size()), static_cast<int>(kept.size()));
    for (std::size_t r = 0; r < kept.size(); ++r) {
        coefficients.rows.push_back(old.rows[kept[r]]);
        coefficients.values.push_back(old.values[kept[r]]);
        for (std::size_t q = 0; q < kept.size(); ++q) {
            coefficients.variance(static_cast<int>(r) + 1, static_cast<int>(q) + 1) =
                old.variance(static_cast<int>(kept[r]) + 1, static_cast<int>(kept[q]) + 1);
        }
    }
    ParameterSet factor;
    int c = 0;
    for (const FactorPlace& place : NonzeroPlaces(F)) {
        ++c;
        factor.rows.push_back(DisplayRow("B^-1(" + Whole(place.i) + "," + Whole(place.j) + ")",
                                         F(place.i, place.j), tF(c)));
        factor.values.push_back(F(place.i, place.j));
    }
    factor.variance = VarBInv;
    WriteCombinedWaldFile(workspace, T, coefficients, factor);
}

void WriteStructuralWaldFile(const Workspace& workspace, double T,
                             const std::vector<std::string>& names, const Pattern& Apat,
                             const Vector& CoefA, const Vector& tA, const Matrix& VA) {
    const int k = Apat.Size();
    const int count = CoefA.Size();
    TextOutput out(workspace.DataFile("WALDTSV.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Number(T).Whole(count));
    int r = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            if (i == j || (Apat(i, j) != 1 && Apat(i, j) != -1)) {
                continue;
            }
            ++r;
            std::string label = ResponseName("x(" + Whole(i) + "," + Whole(j) +
                                             ")=" + names[static_cast<std::size_t>(i - 1)]);
            label.resize(LabelWidth, ' ');
            const double value = CoefA(r);
            const std::string sign = value < 0 ? "-" : "+";
            label +=
                " x " +
                RightAligned(sign + TrimLeft(FormatNumber(std::abs(value), "###########0.0000")),
                             20) +
                " " + RightAligned("(" + TrimLeft(FormatNumber(tA(r), "#####0.0000")) + ")", 15);
            out.WriteRecord(CommaRecord().Text(label));
        }
    }
    for (int q = 1; q <= count; ++q) {
        out.WriteRecord(CommaRecord().Number(CoefA(q)));
    }
    for (int q = 1; q <= count; ++q) {
        for (int s = 1; s <= count; ++s) {
            out.WriteRecord(CommaRecord().Number(VA(q, s)));
        }
    }
    out.Close();
}

} // namespace lorvane
