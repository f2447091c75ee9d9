#include "structural/SimplexRecords.h"

#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

namespace {

constexpr const char* RecordFile = "TMP.TMP";

} // namespace

void StartSimplexRecords(const Workspace& workspace, int m) {
    TextOutput out(workspace.DataFile(RecordFile), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(m));
    out.Close();
}

void AppendSimplexRecord(const Workspace& workspace, const SimplexRecord& record) {
    TextOutput out(workspace.DataFile(RecordFile), TextOutput::Mode::Append);
    out.WriteRecord(CommaRecord().Number(record.LogLikelihood).Number(record.MAD));
    for (const double value : record.b) {
        out.WriteRecord(CommaRecord().Number(value));
    }
    out.Close();
}

std::vector<SimplexRecord> ReadSimplexRecords(const Workspace& workspace, int m) {
    TextInput input(workspace.DataFile(RecordFile));
    input.ReadCount(m, m);
    std::vector<SimplexRecord> records;
    while (!input.AtEnd()) {
        input.ExpectFields(2LL + m);
        SimplexRecord record;
        record.LogLikelihood = input.ReadNumber();
        record.MAD = input.ReadNumber();
        for (int k = 1; k <= m; ++k) {
            record.b.push_back(input.ReadNumber());
        }
        records.push_back(std::move(record));
    }
    return records;
}

const SimplexRecord* BestByLogLikelihood(const std::vector<SimplexRecord>& records) {
    const SimplexRecord* best = nullptr;
    for (const SimplexRecord& record : records) {
        if (best == nullptr || best->LogLikelihood <= record.LogLikelihood) {
            best = &record;
        }
    }
    return best;
}

const SimplexRecord* BestByMAD(const std::vector<SimplexRecord>& records) {
    const SimplexRecord* best = nullptr;
    for (const SimplexRecord& record : records) {
        if (best == nullptr || record.MAD <= best->MAD) {
            best = &record;
        }
    }
    return best;
}

} // namespace lorvane
