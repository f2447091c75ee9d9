#include "frame/WorkFileModel.h"

#include "frame/Module.h"
#include "frame/RuntimeError.h"

namespace lorvane {

int EstimationObservations(const Module& module) {
    return module.SampleLast - module.SampleFirst + 1 - module.p;
}

void ExpectModelObservations(const Module& module, double T) {
    if (T != EstimationObservations(module)) {
        Raise(InputPastEndOfFile);
    }
}

} // namespace lorvane
