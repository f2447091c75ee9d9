#pragma once

#include <string>
#include <vector>

#include "numeric/Matrix.h"
#include "support/TestModule.h"

namespace lorvane::test {

// The factor L of the error variance of the example data's VAR(2) with an intercept.
Matrix ExampleFactor();

// The example data set: quarterly 1960.1 to 1982.4, six variables.
std::string E1Csv();

// Starts the module on a work folder that holds the given CSV data.
void StartWith(TestModule& test, const std::string& csv);

// On SELOBS: a subset, the sample t = 2..76 of the example data chosen on SELSS1, back on SELOBS.
void ChooseE1Sample(Module& module);

// The typical road on the example data up to VARDetermin: the variables at the given rows of
// SelVar1's list (by default the three log-differences), the sample t = 2..76 chosen on SELSS1.
void WalkToVARDetermin(TestModule& test, const std::vector<int>& items = {3, 4, 5});

} // namespace lorvane::test
