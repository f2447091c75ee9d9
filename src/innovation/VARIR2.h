#pragma once

#include <string>

#include "frame/Int16.h"
#include "frame/Screen.h"

namespace lorvane {

// Innovation responses with standard errors: the user sets the horizon H (at least 10) and
// starts the computation; the responses, their maxima and standard errors go to VARIR2.TMP,
// the decomposition of the forecast error variance to VARDECOMP.TMP, and the report to the
// screen and, on request, to the log.
class VARIR2 : public Screen {
public:
    explicit VARIR2(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    std::string UnloggedWork() const override;

private:
    void ShowHorizon();
    void ChangeHorizon(int step);
    void Start();
    void Continue();
    void SetStage(const std::string& stage);
    void ShowWorkingTime();
    void Pause();
    void ShowReport();

    // The report of the last Start.
    std::string report_;
    // The status line's stage text, the start time of the computation in seconds since
    // midnight, and the whole seconds last shown behind the stage (-1: none yet).
    std::string stage_;
    double start_ = 0;
    double shownSeconds_ = -1;
};

} // namespace lorvane
