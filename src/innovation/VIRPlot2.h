#pragma once

#include "frame/Int16.h"
#include "frame/Screen.h"
#include "innovation/PlotDrawing.h"

namespace lorvane {

// The plots of the innovation responses: one response of VARIR2.TMP at a time, with dots for
// its one and two standard error bands. The user picks another response from the list, reads
// the horizon under the pointer, marks a horizon on the picture, and saves the picture as a
// numbered bitmap under LORVANE.DAT, which the log notes. Done starts the analysis again.
// Responses without the uncertainty of L are said to be so, and their impact has no band.
class VIRPlot2 : public Screen {
public:
    explicit VIRPlot2(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    void DoubleClick(Control& control, int item) override;
    void MouseMove(Control& control, double x, double y) override;
    void PictureDoubleClick(Control& control) override;

    // The number (from 1) of the plot shown.
    int Plot() const { return plot_; }

private:
    void ShowPlot();
    void BuildList();
    void Draw();
    void Save();
    // H, the ends of the horizontal axis and the top of the frame, as the last drawing left
    // them in AuxList.
    double AuxValue(int index);
    Int16 HorizonUnderPointer();

    int plot_ = 1;
    // The picture's current position: where the pointer was last.
    double currentX_ = 0;
    double currentY_ = 0;
};

} // namespace lorvane
