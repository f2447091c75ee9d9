#include "data/SELSS1.h"

#include <algorithm>

#include "data/SELOBS.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"

namespace lorvane {

namespace {

constexpr int LargestStep = 10000;

const char* const BoundControls[] = {"Label1", "Lower",    "Upper",  "NewLowerB", "NewUpperB",
                                     "LDown",  "LUp",      "UDown",  "UUp",       "StapLabel",
                                     "Stap",   "StepDown", "StepUp", "StapX10",   "StapOver10"};

} // namespace

SELSS1::SELSS1(Module& module) : Screen(module, "SELSS1", "Bounds of the subsample", 7200, 5400) {
    Add(ControlKind::Label, "Label0", " Choose the bounds of t", 0, 0, 7200, 360);
    Add(ControlKind::Label, "Label1", "Bounds of t down or up", 240, 480, 3600, 300);
    Add(ControlKind::Label, "Lower", "Lower bound of t:", 240, 900, 3600, 300);
    Add(ControlKind::Label, "Upper", "Upperbound of t:", 240, 2040, 3600, 300);
    Add(ControlKind::TextBox, "LowerBound", "", 0, 0, 0, 0).Visible = false;
    Add(ControlKind::TextBox, "UpperBound", "", 0, 0, 0, 0).Visible = false;
    Add(ControlKind::TextBox, "NewLowerB", "", 240, 1260, 1080, 360).Locked = true;
    Add(ControlKind::TextBox, "NewUpperB", "", 240, 2400, 1080, 360).Locked = true;
    Add(ControlKind::Button, "LDown", "", 1440, 1260, 1080, 360);
    Add(ControlKind::Button, "LUp", "", 2640, 1260, 1080, 360);
    Add(ControlKind::Button, "UDown", "", 1440, 2400, 1080, 360);
    Add(ControlKind::Button, "UUp", "", 2640, 2400, 1080, 360);
    Add(ControlKind::Label, "StapLabel", "Step size =", 240, 3180, 1080, 300);
    Add(ControlKind::TextBox, "Stap", "", 1440, 3120, 1080, 360).Locked = true;
    Add(ControlKind::Button, "StepDown", "Step down", 240, 3660, 1680, 360);
    Add(ControlKind::Button, "StepUp", "Step up", 2040, 3660, 1680, 360);
    Add(ControlKind::Button, "StapX10", "Step size x 10", 240, 4140, 1680, 360);
    Add(ControlKind::Button, "StapOver10", "Step size / 10", 2040, 4140, 1680, 360);
    Add(ControlKind::ListBox, "ObsList", "", 4080, 480, 2880, 4080);
    Add(ControlKind::Button, "BoundsOK", "Bounds O.K.", 4080, 4740, 1380, 420);
    Add(ControlKind::Button, "Oops", "Oops!", 240, 4740, 1380, 420).Visible = false;
    Add(ControlKind::Button, "Continue", "Continue", 5580, 4740, 1380, 420).Visible = false;
}

void SELSS1::Load() {
    ShowStep(1);
    ShowBounds();
    SetFocus("BoundsOK");
}

void SELSS1::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

int SELSS1::Step() const {
    return static_cast<int>(Val(Trim((*this)("Stap").Caption)));
}

void SELSS1::ShowStep(int step) {
    const std::string text = Trim(NumberToText(step));
    (*this)("Stap").Caption = text;
    (*this)("LDown").Caption = text + " Down";
    (*this)("UDown").Caption = text + " Down";
    (*this)("LUp").Caption = text + " Up";
    (*this)("UUp").Caption = text + " Up";
}

void SELSS1::ShowLabels(int lower, int upper) {
    const DataStore& store = module.store();
    auto describe = [&](const std::string& head, int t) {
        const std::string label = store.ObsLabelOf(t);
        return head + NumberToText(t) + (Val(label) != t ? " (" + label + ")" : "");
    };
    (*this)("Lower").Caption = describe("Lowerbound: t =", lower);
    (*this)("Upper").Caption = describe("Upperbound: t =", upper);
}

void SELSS1::ShowBounds() {
    const DataStore& store = module.store();
    Control& list = (*this)("ObsList");
    list.ClearItems();
    for (int t = module.FirstAvailObs; t <= module.LastAvailObs; ++t) {
        list.AddItem(store.ObsLabelOf(t));
    }
    const std::string first = Trim(NumberToText(module.FirstAvailObs));
    const std::string last = Trim(NumberToText(module.LastAvailObs));
    (*this)("LowerBound").Caption = first;
    (*this)("NewLowerB").Caption = first;
    (*this)("UpperBound").Caption = last;
    (*this)("NewUpperB").Caption = last;
    ShowLabels(module.FirstAvailObs, module.LastAvailObs);
}

void SELSS1::MoveBound(const std::string& button) {
    const int step = Step();
    int lower = static_cast<int>(Val((*this)("NewLowerB").Caption));
    int upper = static_cast<int>(Val((*this)("NewUpperB").Caption));
    const int lowest = static_cast<int>(Val((*this)("LowerBound").Caption));
    const int highest = static_cast<int>(Val((*this)("UpperBound").Caption));
    if (button == "LDown") {
        lower = std::max(lower - step, lowest);
    } else if (button == "LUp") {
        lower = std::min(lower + step, upper);
    } else if (button == "UDown") {
        upper = std::max(upper - step, lower);
    } else {
        upper = std::min(upper + step, highest);
    }
    ShowStep(step);
    (*this)("NewLowerB").Caption = Trim(NumberToText(lower));
    (*this)("NewUpperB").Caption = Trim(NumberToText(upper));
    ShowLabels(lower, upper);
}

void SELSS1::ChangeStep(const std::string& button) {
    int step = Step();
    if (button == "StepDown") {
        step = step > 1 ? step - 1 : step;
    } else if (button == "StepUp") {
        step = std::min(step + 1, LargestStep);
    } else if (button == "StapX10") {
        step = std::min(step * 10, LargestStep);
    } else {
        step = std::max<int>(CInt(step / 10.0), 1);
    }
    ShowStep(step);
}

void SELSS1::ConfirmBounds() {
    const int lower = static_cast<int>(Val((*this)("NewLowerB").Caption));
    const int upper = static_cast<int>(Val((*this)("NewUpperB").Caption));
    (*this)("Label0").Caption =
        " Chosen subsample: t =" + NumberToText(lower) + " to" + NumberToText(upper);
    module.SampleFirst = lower;
    module.SampleLast = upper;
    for (const char* name : BoundControls) {
        (*this)(name).Visible = false;
    }
    (*this)("BoundsOK").Visible = false;
    (*this)("Continue").Visible = true;
    (*this)("Oops").Visible = true;
    SetFocus("Continue");
}

void SELSS1::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "LDown" || name == "LUp" || name == "UDown" || name == "UUp") {
        MoveBound(name);
    } else if (name == "StepDown" || name == "StepUp" || name == "StapX10" ||
               name == "StapOver10") {
        ChangeStep(name);
    } else if (name == "BoundsOK") {
        ConfirmBounds();
    } else if (name == "Oops") {
        if (Screen* selobs = module.LoadedScreen("SELOBS")) {
            (*selobs)("Continue").Visible = false;
        }
        module.ShowOnTop("SELSS1");
    } else if (name == "Continue") {
        auto* found = dynamic_cast<SELOBS*>(&module.ScreenByName("SELOBS"));
        if (found == nullptr) {
            Raise(TypeMismatch);
        }
        SELOBS& selobs = *found;
        if (!selobs.ReportChosen(selobs("List1"))) {
            return;
        }
        module.PinnedScreen2.clear();
        module.UnloadScreen("SELSS1");
        selobs.Visible = true;
        selobs("Continue").Visible = true;
    }
}

} // namespace lorvane
