#pragma once

#include <vector>

namespace lorvane {

struct Workspace;

// One finished run of the search: the log likelihood and the MAD at its result, and the result.
struct SimplexRecord {
    double LogLikelihood = 0;
    double MAD = 0;
    std::vector<double> b;
};

// TMP.TMP, the runs of one visit to the search screen: m on the first line, then per run a line
// with the log likelihood and the MAD and m lines with one element of b each.
void StartSimplexRecords(const Workspace& workspace, int m);
// Reopens the file for appending, so the records survive a change of screen.
void AppendSimplexRecord(const Workspace& workspace, const SimplexRecord& record);
// The records of a model with m free parameters: an m other than that, or a record cut short,
// is the file's read error.
std::vector<SimplexRecord> ReadSimplexRecords(const Workspace& workspace, int m);

// The record of the largest log likelihood, or of the smallest MAD; a later record wins a tie.
// Nothing when there is no record.
const SimplexRecord* BestByLogLikelihood(const std::vector<SimplexRecord>& records);
const SimplexRecord* BestByMAD(const std::vector<SimplexRecord>& records);

} // namespace lorvane
