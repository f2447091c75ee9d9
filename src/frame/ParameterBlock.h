#pragma once

#include <string>

#include "frame/Int16.h"

namespace lorvane {

// What the shared selection screens need to know of this module.
struct ParameterBlock {
    Int16 MaxVars;
    Int16 MinVars;
    std::string SelVarTitle;
    std::string ScreenAfterSelVar;
    std::string SelectedCaption;
    std::string SecondSelectedCaption;
    std::string ScreenAfterSelObs;
    std::string ScreenAfterInfo;

    // This module wants at least two variables and sets no largest number.
    void ResetLimits() {
        MaxVars = -1;
        MinVars = 2;
    }
};

// The model switches that start-up and every restart set to their defaults.
struct ModelFields {
    // d(t): constant, linear trend, seasonal dummies.
    Int16 Intercept;
    Int16 Trend;
    Int16 Seasonal;
    // The VAR order p and the order q of the Chebishev polynomials.
    Int16 p;
    Int16 q;
    // 1 while the pattern of zeros restricts the VAR.
    Int16 Restricted;
    // Arrivals at the fork of the analysis.
    Int16 StructVisits;
    // The description of the VAR model shown by the specification and estimation screens, and
    // the sentence on the Chebishev polynomials that joins it while they are in d(t).
    std::string ModelText;
    std::string ChebishevText;
    // The word of ROUTE.TMP as last read: which estimates are in force.
    std::string Route;
    // The largest horizon of the innovation responses.
    Int16 InnovationHorizon;

    void ResetModel() {
        Intercept = 1;
        Trend = 0;
        Seasonal = 0;
        p = 1;
        StructVisits = 0;
    }
};

} // namespace lorvane
