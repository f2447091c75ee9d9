#pragma once

#include <string>
#include <vector>

#include "checks/ArchLM.h"
#include "checks/CheckModel.h"
#include "checks/Normality.h"
#include "checks/Portmanteau.h"
#include "checks/SerialCorrelationLM.h"
#include "checks/Stability.h"

namespace lorvane {

// Every check of an estimated VAR: the roots of its companion matrix, the portmanteau tests up
// to lag h, the serial correlation and ARCH tests of order q, and the normality tests.
struct ModelChecks {
    int h = 0;
    int q = 0;
    std::vector<CompanionRoot> Roots;
    bool Stable = false;
    PortmanteauTest Autocorrelation;
    SerialCorrelationTest Serial;
    NormalityTest Normal;
    ArchTest Arch;
};

ModelChecks RunModelChecks(const CheckModel& model, int h, int q);

// The report of the checks: the roots with their moduli and the verdict, then each test with
// its statistic, null distribution, p-value, critical values and conclusions at 10% and 5%.
std::string ModelChecksReport(const ModelChecks& checks);

} // namespace lorvane
