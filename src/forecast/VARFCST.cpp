#include "forecast/VARFCST.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "forecast/FanChart.h"
#include "forecast/ForecastInputs.h"
#include "forecast/ForecastReport.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "innovation/PictureSaving.h"
#include "innovation/PlotDrawing.h"
#include "specify/Deterministic.h"

namespace lorvane {

VARFCST::VARFCST(Module& module) : Screen(module, "VARFCST", "Forecasts") {
    Add(ControlKind::Label, "Label0", " Forecasts from the end of the sample", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1", "Horizon:", 240, 480, 1200, 300);
    Add(ControlKind::TextBox, "Horizon", "8", 1440, 480, 960, 300);
    Add(ControlKind::CheckBox, "Check1", "Add the estimation uncertainty", 2640, 480, 4200, 300);
    Control& results = Add(ControlKind::TextBox, "Text1", "", 240, 900, 9120, 5100);
    results.MultiLine = true;
    results.Locked = true;
    FontOfNotepadText(results);
    // The fan charts are drawn here and saved; the screen shows the report only.
    Add(ControlKind::Picture, "Picture1", "", 240, 900, 6000, 4400).Visible = false;
    Add(ControlKind::Button, "Compute", "Compute", 5760, 6120, 1440, 420);
    Add(ControlKind::Button, "Continue", "Continue", 7920, 6120, 1440, 420);
}

void VARFCST::Click(Control& control) {
    if (control.Name == "Compute") {
        Compute();
    } else if (control.Name == "Continue") {
        module.GoToScreen("VWaldT2");
    }
}

void VARFCST::Compute() {
    Control& results = (*this)("Text1");
    // Decision: the Chebishev polynomials are fitted to the sample's interval, and carried past
    // it by their formula they grow without bound within a few steps; forecasts of a model
    // with them are refused rather than extrapolated.
    if (ChebishevCount(module) > 0) {
        results.SetText(" Forecasts need a d(t) that goes on after the sample: respecify the "
                        "model without Chebishev polynomials.");
        return;
    }
    const double horizon = Val((*this)("Horizon").Caption);
    if (horizon < 1 || horizon > 100 || horizon != std::floor(horizon)) {
        results.SetText(" The horizon is a whole number from 1 to 100.");
        return;
    }
    const int H = static_cast<int>(horizon);
    const bool estimationUncertainty = (*this)("Check1").Value == 1;

    const ForecastModel model = ReadForecastModel(module);
    const ForecastData data = ReadForecastData(module, H);
    const int first = module.SampleFirst + module.p - 1;
    const int last = module.SampleLast - 1;
    const Forecast forecast = ComputeForecast(model, data, first, last, H, estimationUncertainty);

    const DataStore& store = module.store();
    ForecastReportForm form;
    form.origin = module.SampleLast;
    form.estimationUncertainty = estimationUncertainty;
    form.observed =
        Eigen::MatrixXd::Constant(H, model.n(), std::numeric_limits<double>::quiet_NaN());
    for (int i = 1; i <= model.n(); ++i) {
        form.names.push_back(Trim(store.SelectedName(i)));
        for (int h = 1; h <= H && last + h < data.Y.rows(); ++h) {
            const double value = data.Y(last + h, i - 1);
            if (value != store.MissingCode) {
                form.observed(h - 1, i - 1) = value;
            }
        }
    }
    std::string report = ForecastReport(forecast, form);
    results.SetText(report);
    report.resize(report.size() - 2);
    OpenLogSection(module);
    AppendToLog(module, report);
    const int shown = std::min(FanHistory, last + 1);
    SaveFanCharts(data.Y.middleRows(last - shown + 1, shown), forecast, form.names);
}

void VARFCST::SaveFanCharts(const Eigen::MatrixXd& history, const Forecast& forecast,
                            const std::vector<std::string>& names) {
    Control& picture = (*this)("Picture1");
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto column = static_cast<Eigen::Index>(i);
        FanChart chart;
        chart.Title = "Forecasts of " + names[i];
        for (Eigen::Index t = 0; t < history.rows(); ++t) {
            chart.History.push_back(history(t, column));
        }
        for (Eigen::Index h = 0; h < forecast.Points.rows(); ++h) {
            chart.Points.push_back(forecast.Points(h, column));
            chart.SE.push_back(forecast.StandardErrors(h, column));
        }
        picture.Drawing = MakeDrawing(module, picture);
        DrawFanChart(*picture.Drawing, chart);
        SavePicture(module, *picture.Drawing);
    }
}

} // namespace lorvane
