#pragma once

#include <string>
#include <vector>

#include "support/TestModule.h"

namespace lorvane::test {

// The example data set: quarterly 1960.1 to 1982.4, six variables.
std::string E1Csv();

// Starts the module on a work folder that holds the given CSV data.
void StartWith(TestModule& test, const std::string& csv);

// The typical road on the example data up to VARDetermin: the variables at the given rows of
// SelVar1's list (by default the three log-differences), the sample t = 2..76 chosen on SELSS1.
void WalkToVARDetermin(TestModule& test, const std::vector<int>& items = {3, 4, 5});

} // namespace lorvane::test
