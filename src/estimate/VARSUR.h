#pragma once

#include "frame/Int16.h"
#include "frame/Screen.h"
#include "numeric/Matrix.h"

namespace lorvane {

class EstimationView;
struct Estimates;
struct RegressionLayout;

// The estimation screen: OLS first, then SUR rounds while zeros restrict the VAR, then the
// variance of L by FIML; the order is kept by enabling the buttons. Continue logs the results
// and goes on to the joint tests.
class VARSUR : public Screen {
public:
    explicit VARSUR(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    std::string UnloggedWork() const override;

private:
    void RunOLS();
    void RunSUR();
    void RunFIML();
    void Continue();

    // k, K, Zeros and T as the hidden boxes hold them.
    Int16 Equations() const;
    Int16 Coefficients() const;
    Int16 Zeros() const;
    double Observations() const;

    EstimationView View();
    // The common reaction to a singular system: the status and the results say so.
    void ReactToSingularity();
    // A SUR round that failed: OLS (or the last good round) stays in force, FIML may follow.
    void EndIncompleteSUR();
    // An estimation that cannot go on: Continue is off and the focus is on Respecify.
    void OfferRespecification();
    void EndFailedFIML(const std::string& message);
    // False, with the reason in the results, when OLS estimates cannot be reported: an equation
    // with no more observations than coefficients, or a coefficient without a positive variance.
    bool ReportableEstimates(const RegressionLayout& layout, double T, const Estimates& estimates);
    // Sigma = LL'; false when Sigma is not positive definite (the message of a zero pivot is
    // shown by the decomposition).
    bool DecomposeSigma(const Matrix& Sigma, Matrix& L, Int16 k);
    // After a round that rewrote WALDT.TMP without L: no variance of L is in force.
    void ForgetVarianceOfL();

    // The SUR rounds reported so far.
    Int16 round_;
    // Estimates are on the screen; Continue writes them to the log.
    bool estimated_ = false;
};

} // namespace lorvane
