#pragma once

namespace lorvane {

class Module;

struct InformationCriteria {
    double Akaike = 0;
    double HannanQuinn = 0;
    double Schwarz = 0;
};

// The criteria of a VAR of order q with every coefficient free, estimated by OLS over its own
// effective sample (first + q to last). False when the residual moment matrix or X'X cannot be
// inverted; the criteria are then left as they were.
bool ComputeCriteria(Module& module, int q, InformationCriteria& criteria);

} // namespace lorvane
