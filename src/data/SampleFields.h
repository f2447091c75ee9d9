#pragma once

#include "frame/Int16.h"

namespace lorvane {

// The sample the analysis uses: the range in which every chosen variable is present, and the
// stretch of it the user chose.
struct SampleFields {
    Int16 FirstAvailObs;
    Int16 LastAvailObs;
    Int16 SampleFirst;
    Int16 SampleLast;
    // Incomplete observations between the bounds of the last report.
    Int16 MissingInBetween;
};

} // namespace lorvane
