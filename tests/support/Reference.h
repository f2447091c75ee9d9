#pragma once

#include <nlohmann/json.hpp>

namespace lorvane::test {

// The independent results for the example data (tests/reference/e1.json; its README says
// where each figure comes from).
const nlohmann::json& E1Reference();

} // namespace lorvane::test
