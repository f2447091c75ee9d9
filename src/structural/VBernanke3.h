#pragma once

#include <string>
#include <vector>

#include "frame/Screen.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

class EstimationView;

// Maximum likelihood estimation of the structural model by a downhill simplex search over the
// free elements b of B, from the nonstructural variance of the errors. The user may first
// minimise the largest deviation of B'B from the inverse of that variance (option 2), then
// maximise the likelihood (option 1), and restart as often as wished: every run is recorded in
// TMP.TMP and the next one starts from the best record so far. "Done" reports the best record
// with its variance and hands B^-1 to the innovation analysis.
class VBernanke3 : public Screen {
public:
    explicit VBernanke3(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    void SwitchOption();
    void Search();
    void Estimate();
    void Continue();

    int Option() const;
    EstimationView View();
    // The end of a failed estimate: the message in a box and in the results, the way back open.
    void Fail(const std::string& message);
    // The steps of the estimate that follow B^-1 on the maximum likelihood route: the variances
    // of b, of the structural coefficients and of B^-1, and the files that carry them. False
    // when one of them failed (the failure is told).
    bool EstimateVariances(EstimationView& view, const Pattern& Apat, const std::vector<double>& b,
                           const Matrix& BInv, const std::vector<std::string>& names);

    // The constant of the log likelihood, kept as long as the screen.
    double c0_ = 0;
};

} // namespace lorvane
