#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "innovation/MovingAverage.h"

namespace lorvane {

class TextInput;
struct Workspace;

// A variable's name as the responses show it: trimmed, and a name of more than 30 characters
// cut to 28 followed by "..".
std::string ResponseName(std::string_view name);

// "Response of " + name i + " to a unit shock in " + name j.
std::string ResponseTitle(const std::string& variable, const std::string& innovation);

// Decision: without a variance of L the standard errors come from the coefficients alone, and
// the report and the plots say so in these words.
inline constexpr const char* WithoutVarianceOfL =
    "The uncertainty of the estimate of L is not included: no FIML variance of L is available.";

// The report of the responses and their standard errors; lines end in CR LF. Without a
// variance of L (varianceOfL false) the note above follows the reference. line runs after
// each horizon's line.
std::string ResponseReport(const Responses& psi, const Responses& se,
                           const std::vector<std::string>& names, bool varianceOfL,
                           const std::function<void()>& line = {});

// VARIR2.TMP: H and n, then per response its title, the largest absolute response of the
// variable, and Psi and SE for each horizon.
void WriteResponseFile(const Workspace& workspace, const Responses& psi, const Responses& se,
                       const Vector& maxResponse, const std::vector<std::string>& names);

// The head of VARIR2.TMP read from its start: H, at least 0, and n, at least 1. A file too short
// for the n^2 responses they announce is its read error, found before anything is sized by them.
struct ResponseFileHead {
    int H = 0;
    int n = 0;
};
ResponseFileHead ReadResponseHead(TextInput& input);

// VARDECOMP.TMP: the lines of the decomposition table, each a quoted text.
void WriteDecompositionFile(const Workspace& workspace, const std::vector<std::string>& lines);

// The lines of VARDECOMP.TMP as the screen shows them: the quoted text of each line, trimmed
// on the right.
std::vector<std::string> ReadDecompositionFile(const Workspace& workspace);

} // namespace lorvane
