#pragma once

#include <array>
#include <string_view>

namespace lorvane {

struct Workspace;

// The work files that hold the nonstructural estimates. The first arrival at the fork of the
// analysis keeps a copy of each under its name with a leading "B"; later arrivals put the
// copies back, so that a structural model can be respecified from the same estimates.
//
// The log's scratch file stands first in the table and is never copied: the copying runs over
// the entries from the second on.
inline constexpr std::array<std::string_view, 11> NonstructuralFileNames = {
    "Output.TMP", "VARZERO.TMP", "YSURE.TMP", "XSURE.TMP",   "U.TMP",    "WALDT.TMP",
    "WALDTN.TMP", "VARB.TMP",    "VARL.TMP",  "VARLPAT.TMP", "Route.TMP"};

// Copies each file of the set that exists and has a first line to its B name.
void SaveNonstructuralFiles(const Workspace& workspace);

// Copies each B file that exists and has a first line over its original. A file whose copy
// is missing is left as it is.
void RestoreNonstructuralFiles(const Workspace& workspace);

} // namespace lorvane
