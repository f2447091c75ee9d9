#include "estimate/WaldFileWriter.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "estimate/WaldTest.h"
#include "frame/Int16.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

ParameterSet ReadParameterSet(const Workspace& workspace, double& T, const std::string& name) {
    ParameterFile file = ReadFirstParameterSet(workspace.DataFile(name), 0);
    T = file.T;
    ParameterSet set;
    set.rows = std::move(file.rows);
    for (int q = 1; q <= file.values.Size(); ++q) {
        set.values.push_back(file.values(q));
    }
    set.variance = std::move(file.variances.front());
    return set;
}

void WriteCombinedWaldFile(const Workspace& workspace, double T, const ParameterSet& first,
                           const ParameterSet& second, const std::function<void()>& stageDone) {
    auto done = [&stageDone] {
        if (stageDone) {
            stageDone();
        }
    };
    const int K = static_cast<int>(first.rows.size());
    const int n = static_cast<int>(second.rows.size());
    {
        TextOutput out(workspace.DataFile("WALDTN.TMP"), TextOutput::Mode::Output);
        out.WriteRecord(CommaRecord().Number(T).Whole(Int16(K + n)));
        for (const ParameterSet* set : {&first, &second}) {
            for (const std::string& row : set->rows) {
                out.WriteRecord(CommaRecord().Text(row));
            }
        }
        done();
        for (const ParameterSet* set : {&first, &second}) {
            for (const double value : set->values) {
                out.WriteRecord(CommaRecord().Number(value));
            }
        }
        done();
        for (int r = 1; r <= K; ++r) {
            for (int q = 1; q <= K; ++q) {
                out.WriteRecord(CommaRecord().Number(first.variance(r, q)));
            }
            for (int q = 1; q <= n; ++q) {
                out.WriteRecord(CommaRecord().Whole(0));
            }
        }
        for (int r = 1; r <= n; ++r) {
            for (int q = 1; q <= K; ++q) {
                out.WriteRecord(CommaRecord().Whole(0));
            }
            for (int q = 1; q <= n; ++q) {
                out.WriteRecord(CommaRecord().Number(second.variance(r, q)));
            }
        }
        out.Close();
    }
    done();
    std::error_code error;
    std::filesystem::copy_file(workspace.DataFile("WALDTN.TMP"), workspace.DataFile("WALDT.TMP"),
                               std::filesystem::copy_options::overwrite_existing, error);
    if (error) {
        Raise(PathFileAccessError);
    }
}

} // namespace lorvane
