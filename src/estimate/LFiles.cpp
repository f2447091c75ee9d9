#include "estimate/LFiles.h"

#include <algorithm>
#include <cmath>

#include "estimate/EstimationView.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"

namespace lorvane {

void WriteLFiles(EstimationView& view, const Matrix& L, int k) {
    std::string text = "= LL', where L =\r\n";
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            text += RightAligned(FormatNumber(L(i, j), j <= i ? "0.00000E+000" : "#0"), 15);
        }
        text += "\r\n";
    }
    view.Append(text);

    TextOutput values(view.module.DataFile("VARL.TMP"), TextOutput::Mode::Output);
    values.WriteRecord(CommaRecord().Whole(k));
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            values.WriteRecord(CommaRecord().Number(L(i, j)));
        }
    }
    values.Close();

    TextOutput pattern(view.module.DataFile("VARLPAT.TMP"), TextOutput::Mode::Output);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            pattern.WriteRecord(CommaRecord().Whole(j <= i ? 1 : 0));
        }
    }
    pattern.Close();
}

namespace {

Matrix ReadL(const Workspace& workspace, const std::string& name, int lowest, int highest) {
    TextInput input(workspace.DataFile(name));
    const int k = input.ReadCount(lowest, highest);
    input.ExpectFields(static_cast<long long>(k) * k);
    Matrix L(k, k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            L(i, j) = input.ReadNumber();
        }
    }
    return L;
}

} // namespace

Matrix ReadLFile(const Workspace& workspace, const std::string& name) {
    return ReadL(workspace, name, 1, 32767);
}

Matrix ReadLFile(const Workspace& workspace, const std::string& name, int k) {
    return ReadL(workspace, name, std::max(k, 1), k);
}

int ReadLCount(const Workspace& workspace, int k) {
    TextInput input(workspace.DataFile("VARL.TMP"));
    return input.ReadCount(k, k);
}

double LargestDifference(const Matrix& a, const Matrix& b) {
    double largest = 0;
    for (int i = 1; i <= a.Rows(); ++i) {
        for (int j = 1; j <= a.Cols(); ++j) {
            largest = std::max(largest, std::abs(a(i, j) - b(i, j)));
        }
    }
    return largest;
}

} // namespace lorvane
