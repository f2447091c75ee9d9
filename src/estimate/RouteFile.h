#pragma once

#include <string>
#include <string_view>

namespace lorvane {

class Module;
struct Workspace;

// The words of ROUTE.TMP, which tells later screens which estimates are in force.
inline constexpr std::string_view RouteOlsSur = "NSVARSUR";
inline constexpr std::string_view RouteMaximumLikelihood = "NSVARML";
// The structural model estimated with the variance of its maximum likelihood estimates.
inline constexpr std::string_view RouteStructuralMaximumLikelihood = "SVARMLBERNANKE";
// The structural model of OLS or SUR estimates, without a variance of L.
inline constexpr std::string_view RouteStructuralOlsSur = "SVARSURBERNANKE";

// ROUTE.TMP: one record, the route word in double quotes.
void WriteRoute(const Workspace& workspace, std::string_view word);
// The word of ROUTE.TMP, trimmed and in upper case; it is kept as the module's Route. Any
// other word than the four above is the file's read error, 62.
std::string ReadRoute(Module& module);

} // namespace lorvane
