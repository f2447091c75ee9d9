#include "structural/StructuralModel.h"

#include "frame/DrivePaths.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

namespace {

constexpr double SmallestDiagonal = 1E-30;

} // namespace

bool Free(const Pattern& Apat, int i, int j) {
    return Apat(i, j) == 1 || Apat(i, j) == -1;
}

int StructuralCoefficientCount(const Pattern& Apat) {
    int count = 0;
    for (int i = 1; i <= Apat.Size(); ++i) {
        for (int j = 1; j <= Apat.Size(); ++j) {
            count += i != j && Free(Apat, i, j) ? 1 : 0;
        }
    }
    return count;
}

int FreeParameterCount(const Pattern& Apat) {
    int count = 0;
    for (int i = 1; i <= Apat.Size(); ++i) {
        for (int j = 1; j <= Apat.Size(); ++j) {
            count += Free(Apat, i, j) ? 1 : 0;
        }
    }
    return count;
}

bool StructuralCoefficients(const Pattern& Apat, const Matrix& B, Vector& CoefA, Vector& CoefC) {
    const int k = Apat.Size();
    CoefA.Resize(0);
    CoefC.Resize(0);
    for (int i = 1; i <= k; ++i) {
        if (B(i, i) < SmallestDiagonal) {
            return false;
        }
    }
    CoefA.Resize(StructuralCoefficientCount(Apat));
    CoefC.Resize(k);
    int r = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            if (i != j && Free(Apat, i, j)) {
                CoefA(++r) = -B(i, j) / B(i, i);
            }
        }
        CoefC(i) = 1 / B(i, i);
    }
    return true;
}

Pattern ReadStructuralPattern(const Workspace& workspace, int k) {
    return ReadPattern(workspace.DataFile("SVARA.TMP"), k);
}

std::vector<std::string> ReadResidualNames(const Workspace& workspace, int k) {
    TextInput input(workspace.DataFile("U.TMP"));
    input.ReadCount(k, k);
    input.ExpectFields(k);
    std::vector<std::string> names;
    for (int i = 1; i <= k; ++i) {
        names.push_back(StripQuotes(input.ReadLine(), 0));
    }
    return names;
}

} // namespace lorvane
