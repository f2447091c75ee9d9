#include "innovation/VARIR2.h"

#include <filesystem>
#include <vector>

#include "estimate/LFiles.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/TextFile.h"
#include "innovation/Decomposition.h"
#include "innovation/InnovationModel.h"
#include "innovation/MovingAverage.h"
#include "innovation/ResponseErrors.h"
#include "innovation/ResponseOutput.h"
#include "innovation/WorkCounter.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "specify/Deterministic.h"

namespace lorvane {

namespace {

constexpr int SmallestHorizon = 10;
constexpr double SecondsPerDay = 86400;
constexpr std::size_t ComparedTail = 100;

// Thrown when the screen was closed while the computation let other events run.
struct Abandoned {};

std::string Tail(const std::string& text) {
    return text.size() > ComparedTail ? text.substr(text.size() - ComparedTail) : text;
}

// Creates the file empty and deletes it, so that a missing file is no failure.
void RemoveWorkFile(const Module& module, const char* name) {
    TextOutput(module.DataFile(name), TextOutput::Mode::Output).Close();
    std::error_code error;
    std::filesystem::remove(module.DataFile(name), error);
}

} // namespace

VARIR2::VARIR2(Module& module)
    : Screen(module, "VARIR2", " VAR innovation responses with standard errors") {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 360);
    Control& report = Add(ControlKind::TextBox, "Text2", "", 240, 480, 9120, 4980);
    report.MultiLine = true;
    report.Locked = true;
    Add(ControlKind::Label, "Label1", "Innovation response horizon (>9):", 240, 5640, 3000, 300);
    Add(ControlKind::Button, "Command4", "Horizon down", 3360, 5580, 1440, 420);
    Add(ControlKind::Button, "Command5", "Horizon up", 4920, 5580, 1440, 420);
    Control& store = Add(ControlKind::CheckBox, "Check1", "Store output", 6600, 5610, 2760, 360);
    store.Visible = false;
    // Decision: the log is the whole record, so the responses go there unless the user says no.
    store.Value = 1;
    Add(ControlKind::Button, "Command1", "Start", 4800, 6120, 1440, 420);
    Add(ControlKind::Button, "Command3", "Continue", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command2", "Back", 7920, 6120, 1440, 420);
}

void VARIR2::Load() {
    FontOfNotepadText((*this)("Text2"));
    module.InnovationHorizon = SmallestHorizon;
    ShowHorizon();
    SetDefault("Command1");
    SetFocus("Command1");
    (*this)("Command3").Visible = false;
    (*this)("Text2").Caption =
        "Adjust the innovation response horizon and click the 'Start' button";
    const int n = ReadLCount(module, module.store().SelectedCount());
    const Pattern lPattern = ReadPattern(module.DataFile("VARLPAT.TMP"), n);
    const char* route = IsStructuralPattern(lPattern) ? " Structural " : " Nonstructural ";
    (*this)("Label0").Caption =
        std::string(route) + "VAR innovation responses with standard errors";
    module.Pointer = MousePointer::Normal;
}

void VARIR2::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VARIR2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        try {
            Start();
        } catch (const Abandoned&) {
            // The user left the screen; nothing of the computation is wanted any more.
        }
    } else if (name == "Command2") {
        module.GoToScreen("VARSTR1");
    } else if (name == "Command3") {
        Continue();
    } else if (name == "Command4") {
        ChangeHorizon(-1);
    } else if (name == "Command5") {
        ChangeHorizon(1);
    }
}

void VARIR2::ShowHorizon() {
    (*this)("Label1").Caption =
        "Innovation response horizon =" + NumberToText(module.InnovationHorizon);
}

void VARIR2::ChangeHorizon(int step) {
    try {
        module.InnovationHorizon += step;
    } catch (const RuntimeError& error) {
        if (error.Number() != Overflow) {
            throw;
        }
        module.InnovationHorizon = SmallestHorizon;
    }
    if (module.InnovationHorizon < SmallestHorizon) {
        module.InnovationHorizon = SmallestHorizon;
    }
    ShowHorizon();
}

void VARIR2::SetStage(const std::string& stage) {
    (*this)("Label0").Caption = stage;
    stage_ = stage;
    shownSeconds_ = -1;
}

void VARIR2::ShowWorkingTime() {
    double elapsed = ToSingle(module.platform().clock.secondsSinceMidnight()) - start_;
    if (elapsed < 0) {
        elapsed += SecondsPerDay; // the computation ran past midnight
    }
    const double seconds = Fix(elapsed);
    if (seconds == shownSeconds_) {
        return; // the line would read the same
    }
    shownSeconds_ = seconds;
    (*this)("Label0").Caption = stage_ + ". Working time" + NumberToText(seconds);
    // A new text is repainted; that is the only pause inside the loops.
    Pause();
}

void VARIR2::Pause() {
    module.platform().events.yield();
    if (module.LoadedScreen(Name()) != this) {
        throw Abandoned{};
    }
}

void VARIR2::Start() {
    (*this)("Command1").Enabled = false;
    (*this)("Command4").Visible = false;
    (*this)("Command5").Visible = false;
    module.Pointer = MousePointer::Wait;
    (*this)("Text2").Caption.clear();
    SetStage(" Reading data");
    start_ = ToSingle(module.platform().clock.secondsSinceMidnight());
    Pause();

    const DataStore& store = module.store();
    const int n = store.SelectedCount();
    const int p = module.p;
    const int H = module.InnovationHorizon;
    const double T = module.SampleLast - (module.SampleFirst + p) + 1;
    const int d = DeterministicTermCount({module.Intercept, module.Trend, module.Seasonal,
                                          store.PeriodsPerYear, ChebishevCount(module)});
    auto refresh = [this] { ShowWorkingTime(); };
    InnovationModel model = ReadInnovationModel(module, n, p, T, d, refresh);
    std::vector<std::string> names;
    for (int i = 1; i <= n; ++i) {
        names.push_back(ResponseName(store.SelectedName(i)));
    }
    ShowWorkingTime();

    const Vector maxResponse = ComputeMaxResponses(model, H, refresh);
    ShowWorkingTime();

    WorkCounter work{0, TotalWork(n, H, model.NA, model.NL), refresh};
    SetStage(" Making innovation responses");
    Pause();
    const Responses psi = ComputeResponses(model, H, [&work] { work.Step(); });

    SetStage(" Making standard errors");
    Pause();
    const Responses se = ComputeStandardErrors(model, H, work);

    SetStage(" Making output");
    Pause();
    WriteResponseFile(module, psi, se, maxResponse, names);
    WriteDecompositionFile(module, DecompositionLines(DecompositionShares(psi), names));
    report_ = ResponseReport(psi, se, names, model.VarianceOfL, [this, &work] {
        work.Step();
        Pause();
    });
    ShowReport();
}

void VARIR2::ShowReport() {
    (*this)("Label0").Caption = " Innovation responses with standard errors ";
    Control& box = (*this)("Text2");
    box.SetText(report_); // a report too long for the box leaves it empty; see below
    module.Pointer = MousePointer::Normal;
    (*this)("Check1").Visible = true;
    (*this)("Command3").Visible = true;
    SetFocus("Command3");
    if (Tail(box.Caption) != Tail(report_)) {
        module.boxes().MessageBoxShort(
            "The text box is full. Not all the results can be displayed! However, if you check \"" +
                (*this)("Check1").Caption +
                "\" the complete results will be written to the output file OUTPUT.TXT.",
            0, "Warning");
        (*this)("Label0").Caption = " Innovation responses with standard errors (incomplete)";
    }
}

std::string VARIR2::UnloggedWork() const {
    return report_.empty() || (*this)("Check1").Value != 1 ? "" : "The innovation responses";
}

void VARIR2::Continue() {
    (*this)("Command3").Enabled = false;
    module.Pointer = MousePointer::Wait;
    if ((*this)("Check1").Value == 1) {
        AppendToLog(module, "");
        AppendToLog(module, report_);
    }
    RemoveWorkFile(module, "NOIRPLOT.TMP");
    RemoveWorkFile(module, "VARIRPL.TMP");
    module.GoToScreen("VARDECOMP");
}

} // namespace lorvane
