#pragma once

#include "estimate/Estimates.h"
#include "frame/Int16.h"

namespace lorvane {

class EstimationView;

// One round of feasible GLS with the error variance LL': every observation is transformed by
// the inverse of L, the moments of the whole system are accumulated in one pass, their K by K
// matrix is inverted into the new V, b = V XY, and a second pass gives the residuals (U.TMP),
// the sums of squares and the new Sigma. `call` numbers the round in the messages. Returns 1
// (with the message appended to the results) when L or the moment matrix is singular or V has
// a diagonal element that is not positive; `estimates` is then partly replaced.
Int16 EstimateSUR(EstimationView& view, const Matrix& L, double T, Int16 K, Int16 call,
                  Estimates& estimates);

} // namespace lorvane
