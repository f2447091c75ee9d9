// The readers of the work files that pass results between screens, on damaged files. The first
// byte, counted from the digit 0, chooses the reader: 0 WALDT.TMP as the joint tests read it,
// 1 WALDTSV.TMP, 2 the first set of WALDT.TMP (and WALDTSV.TMP as the structural screens count its
// tests), 3 VARL.TMP, 4 VARZERO.TMP, 5 YSURE.TMP and XSURE.TMP, 6 U.TMP, 7 VARIR2.TMP,
// 8 VARDECOMP.TMP, 9 the innovation model (VARZERO.TMP, VARLPAT.TMP, WALDT.TMP, VARL.TMP), and
// for the likelihood search of the structural model ':' BVARL.TMP, ';' BERNSV2.TMP and '<'
// TMP.TMP. The second byte gives what the module would know beside the files (k, K, T, the
// response asked for, the count of free parameters); the rest are the files, one after the other
// behind the marker "--FILE--". A reader must stop with its run-time error or give a result no
// larger than its file could describe; it must never loop, crash or ask for more memory than the
// file justifies.

#include <algorithm>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "estimate/FimlVariance.h"
#include "estimate/LFiles.h"
#include "estimate/RegressionFiles.h"
#include "estimate/WaldFileWriter.h"
#include "estimate/WaldTest.h"
#include "frame/RuntimeError.h"
#include "frame/Workspace.h"
#include "innovation/InnovationModel.h"
#include "innovation/PlotList.h"
#include "innovation/ResponseOutput.h"
#include "innovation/ResponsePlot.h"
#include "numeric/Pattern.h"
#include "structural/SimplexRecords.h"
#include "structural/StartValues.h"
#include "structural/StructuralModel.h"

using namespace lorvane;
using namespace lorvane::fuzz;

namespace {

constexpr std::string_view Marker = "--FILE--";

std::vector<std::string_view> Files(std::string_view bytes) {
    std::vector<std::string_view> files;
    for (std::size_t start = 0;;) {
        const std::size_t end = bytes.find(Marker, start);
        files.push_back(bytes.substr(start, end == std::string_view::npos ? end : end - start));
        if (end == std::string_view::npos) {
            return files;
        }
        start = end + Marker.size();
    }
}

// The named files hold the given bytes in turn; files beyond the input are empty.
void Write(const Workspace& workspace, std::string_view bytes,
           const std::vector<const char*>& names) {
    const std::vector<std::string_view> files = Files(bytes);
    for (std::size_t f = 0; f < names.size(); ++f) {
        WriteBytes(workspace.DataFile(names[f]), f < files.size() ? files[f] : std::string_view());
    }
}

// A size that the file's bytes cannot describe: more values than it has characters.
void ExpectWithin(long long values, std::size_t size, const char* what) {
    if (values > static_cast<long long>(size)) {
        Broken(std::string(what) + " of " + std::to_string(values) + " values from " +
               std::to_string(size) + " bytes");
    }
}

void ParameterFiles(const Workspace& workspace, int reader, std::size_t size) {
    const std::filesystem::path file = workspace.DataFile("WALDT.TMP");
    if (reader == 0) {
        const ParameterFile parameters = ReadParameterFile(file);
        ExpectWithin(static_cast<long long>(parameters.variances.size()) *
                         parameters.values.Size() * parameters.values.Size(),
                     size, "variances");
    } else if (reader == 1) {
        const ParameterFile parameters = ReadStructuralParameterFile(file);
        ExpectWithin(static_cast<long long>(parameters.values.Size()) * parameters.values.Size(),
                     size, "a variance");
    } else {
        double T = 0;
        const ParameterSet set = ReadParameterSet(workspace, T);
        ExpectWithin(static_cast<long long>(set.values.size()) * set.values.size(), size,
                     "a variance");
    }
}

void RegressionFiles(const Workspace& workspace, std::uint8_t known, std::size_t size) {
    const int k = 1 + known % 4;
    const int K = known / 4;
    RegressionReader reader(workspace, k, K);
    Vector y(k);
    Vector x(K);
    // Each observation takes k + K fields at least.
    for (std::size_t t = 0; t <= size; ++t) {
        reader.Next(y, x);
    }
    Broken("the observations do not reach the end of the files");
}

void InnovationFiles(const Workspace& workspace, std::uint8_t known) {
    const int n = 1 + known % 3;
    const int p = 1 + known / 3 % 3;
    const int d = known / 9 % 3;
    const InnovationModel model = ReadInnovationModel(workspace, n, p, 50, d);
    if (model.Theta.Size() != p * model.Z.Ones() || model.VA.Rows() != model.Theta.Size() ||
        model.VL.Rows() != model.LPattern.Ones()) {
        Broken("the model's parts do not fit its patterns");
    }
}

// The files of the likelihood search, read for a model of k variables and m free parameters.
void StructuralFiles(const Workspace& workspace, int reader, std::uint8_t known, std::size_t size) {
    const int k = 1 + known % 4;
    const int m = known % 16;
    if (reader == 10) {
        const Matrix L = ReadLFile(workspace, "BVARL.TMP", k);
        if (L.Rows() != k) {
            Broken("an L that is not the model's");
        }
        ExpectWithin(static_cast<long long>(k) * k, size, "L");
    } else if (reader == 11) {
        const StartValues start = ReadStartValues(workspace, "BERNSV2.TMP", m);
        if (start.values.size() != static_cast<std::size_t>(m) ||
            start.marks.size() != start.values.size()) {
            Broken("start values that are not the model's");
        }
    } else {
        const std::vector<SimplexRecord> records = ReadSimplexRecords(workspace, m);
        for (const SimplexRecord& record : records) {
            if (record.b.size() != static_cast<std::size_t>(m)) {
                Broken("a record that is not the model's");
            }
        }
        ExpectWithin(static_cast<long long>(records.size()) * (m + 2), size, "records");
    }
}

void Read(const Workspace& workspace, int reader, std::uint8_t known, std::string_view bytes) {
    const std::size_t size = bytes.size();
    switch (reader) {
    case 0:
    case 1:
    case 2:
        Write(workspace, bytes, {"WALDT.TMP"});
        ParameterFiles(workspace, reader, size);
        break;
    case 3: {
        Write(workspace, bytes, {"VARL.TMP"});
        const Matrix L = ReadLFile(workspace);
        ExpectWithin(static_cast<long long>(L.Rows()) * L.Rows(), size, "L");
        break;
    }
    case 4:
        Write(workspace, bytes, {"VARZERO.TMP"});
        ReadPattern(workspace.DataFile("VARZERO.TMP"), known % 40);
        break;
    case 5:
        Write(workspace, bytes, {"YSURE.TMP", "XSURE.TMP"});
        RegressionFiles(workspace, known, size);
        break;
    case 6: {
        Write(workspace, bytes, {"U.TMP"});
        const Matrix u = ReadResiduals(workspace, known % 64, 1 + known % 9);
        ExpectWithin(static_cast<long long>(u.Rows()) * u.Cols(), size, "residuals");
        ExpectWithin(static_cast<long long>(ReadResidualNames(workspace, u.Cols()).size()), size,
                     "names");
        break;
    }
    case 7: {
        Write(workspace, bytes, {"VARIR2.TMP"});
        const ResponsePlot plot = ReadResponsePlot(workspace, 1 + known % 10);
        ExpectWithin(static_cast<long long>(plot.Psi.size()), size, "a response");
        ResponsesWithVarianceOfL(workspace);
        std::filesystem::remove(workspace.DataFile("VARIRPL.TMP"));
        MakePlotList(workspace);
        break;
    }
    case 8:
        Write(workspace, bytes, {"VARDECOMP.TMP"});
        ExpectWithin(static_cast<long long>(ReadDecompositionFile(workspace).size()), size,
                     "lines");
        break;
    case 9:
        Write(workspace, bytes, {"VARZERO.TMP", "VARLPAT.TMP", "WALDT.TMP", "VARL.TMP"});
        InnovationFiles(workspace, known);
        break;
    default: {
        const char* const names[] = {"BVARL.TMP", "BERNSV2.TMP", "TMP.TMP"};
        Write(workspace, bytes, {names[reader - 10]});
        StructuralFiles(workspace, reader, known, size);
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    Workspace workspace;
    workspace.DataFolder = ScratchFolder();
    std::filesystem::create_directories(workspace.DataSubfolder());
    try {
        Read(workspace, static_cast<std::uint8_t>(data[0] - '0') % 13, data[1],
             AsText(data + 2, size - 2));
    } catch (const RuntimeError&) {
        // The reader's own error: what a damaged file may cause.
    }
    return 0;
}
