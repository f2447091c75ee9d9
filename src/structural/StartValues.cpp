#include "structural/StartValues.h"

#include <cmath>

#include "estimate/LFiles.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"
#include "structural/StructuralModel.h"
#include "structural/StructuralVariance.h"

namespace lorvane {

void WriteStartValues(const Workspace& workspace, const char* name, const StartValues& start) {
    TextOutput out(workspace.DataFile(name), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(Int16(static_cast<int>(start.values.size()))));
    for (std::size_t p = 0; p < start.values.size(); ++p) {
        out.WriteRecord(CommaRecord().Number(start.values[p]).Whole(start.marks[p]));
    }
    out.Close();
}

StartValues ReadStartValues(const Workspace& workspace, const char* name, int m) {
    TextInput input(workspace.DataFile(name));
    const int P = input.ReadCount(m, m);
    input.ExpectFields(2LL * P);
    StartValues start;
    for (int p = 1; p <= P; ++p) {
        start.values.push_back(input.ReadNumber());
        start.marks.push_back(input.ReadWhole());
    }
    return start;
}

void FindStartValues(const Workspace& workspace, const StructuralSystem& system,
                     const Pattern& Apat) {
    StartValues start = ReadStartValues(workspace, "BERNSV.TMP", FreeParameterCount(Apat));
    WriteStartValues(workspace, "BERNSV2.TMP", start);
    const int k = Apat.Size();
    for (int c = 1; c <= k; ++c) {
        int rowSum = 0;
        int columnSum = 0;
        for (int j = 1; j <= k; ++j) {
            if (j != c) {
                rowSum += std::abs(Apat(c, j).Value());
                columnSum += std::abs(Apat(j, c).Value());
            }
        }
        if (rowSum == 0 || columnSum == 0) {
            return;
        }
    }
    std::vector<double> b;
    if (!system.SolutionAtLFast(ReadLFile(workspace, "VARL.TMP", k), b)) {
        return;
    }
    for (std::size_t p = 0; p < b.size() && p < start.values.size(); ++p) {
        start.values[p] = b[p];
        start.marks[p] = 1;
    }
    WriteStartValues(workspace, "BERNSV2.TMP", start);
}

} // namespace lorvane
