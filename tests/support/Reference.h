#pragma once

#include <nlohmann/json.hpp>

namespace lorvane::test {

// The independent results for the example data (reference/e1.json of the shared folder).
const nlohmann::json& E1Reference();

} // namespace lorvane::test
