#pragma once

#include <memory>
#include <string>
#include <vector>

#include "frame/Screen.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

class StructuralSystem;

// The structural model identified, solved and reported: the moment conditions B'B = inverse of
// Var(u) written out and counted, solved by symbolic substitution with the steps shown, the
// structural equations with their t-values, the structural factor B^-1 handed to the innovation
// analysis, and the choice between the standard errors of L (method 1) and maximum likelihood
// (method 2). The whole analysis runs on the first activation.
class VBernanke2 : public Screen {
public:
    explicit VBernanke2(Module& module);
    ~VBernanke2() override;

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

    // The pattern kept for the repeated solves (GetA with flag 1 reads SVARA.TMP, any other flag
    // hands out the kept pattern, which must be of size k).
    Pattern GetA(int flag, int k);

private:
    void Analyse();
    bool Identify();
    void TestStarRestrictions(const Matrix& L);
    bool SolveVisibly();
    void AfterSolution();
    bool ReportWithVariance(const std::vector<double>& b);
    bool WriteStructuralFactor(Matrix& F);
    void OfferMethods(const Matrix& F);
    // The end of a model whose moment equations have no analytic solution: maximum likelihood
    // alone, from numeric start values.
    void OfferMethod2Alone();
    void Fail(const std::string& title);
    void SetTitle(const std::string& title);
    void Append(const std::string& text);
    void AppendStep(const std::string& text);
    void Pause();

    void Continue();
    void ChooseMethod2();
    void Respecify();
    void SwapTexts();
    void WriteScratchLog(const std::string& closing);

    std::string report_;
    std::string stepLog_;
    std::vector<std::string> names_;
    Matrix L_;
    Pattern keptA_;
    Int16 parameterCount_;
    Int16 starCount_;
    std::vector<std::string> solverLhs_;
    std::vector<std::string> solverRhs_;
    std::unique_ptr<StructuralSystem> system_;
};

} // namespace lorvane
