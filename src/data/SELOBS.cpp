#include "data/SELOBS.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"

namespace lorvane {

namespace {

// "(=1960.2)" when the label of t says something else than t itself, else empty.
std::string LabelNote(const DataStore& store, int t) {
    const std::string label = store.ObsLabelOf(t);
    return Val(label) != t ? "(=" + label + ")" : "";
}

} // namespace

SELOBS::SELOBS(Module& module) : Screen(module, "SELOBS", "Select observations") {
    Add(ControlKind::Label, "Label1", "", 0, 0, 9600, 360);
    Add(ControlKind::ListBox, "List1", "", 240, 480, 9120, 4320);
    Add(ControlKind::Frame, "Frame1", "Do you want to use a subset of observations?", 240, 4980,
        5400, 1140);
    AddIn("Frame1", ControlKind::Button, "SubsetYes", "", 480, 5460, 1320, 420);
    AddIn("Frame1", ControlKind::Button, "SubsetNo", "", 1980, 5460, 1320, 420);
    Add(ControlKind::Frame, "Frame2", "", 5880, 4980, 3480, 1140);
    AddIn("Frame2", ControlKind::Button, "Continue", "Continue", 6120, 5460, 1440, 420).Visible =
        false;
    AddIn("Frame2", ControlKind::Button, "GoBack", "Back", 7680, 5460, 1440, 420);
}

void SELOBS::Load() {
    FontOfNotepadText((*this)("List1"));
    const DataStore& store = module.store();
    module.FirstAvailObs = module.SampleFirst = store.FirstCommonObs();
    module.LastAvailObs = module.SampleLast = store.LastCommonObs();
    if (!ReportAvailable((*this)("List1"))) {
        return;
    }
    (*this)("SubsetYes").Caption = "Yes";
    (*this)("SubsetNo").Caption = "No";
    // The whole sample is the usual answer, and its "Confirm" takes the same place.
    SetFocus("SubsetNo");
}

void SELOBS::Activate() {
    if (module.ActivateCount != 1) {
        return;
    }
    Control& heading = (*this)("Label1");
    const std::string caption = Trim(module.SelectedCaption);
    heading.Caption = caption.empty() ? " Select a subset of observations" : " " + caption;
    DecorateHeader(*this, heading);
}

bool SELOBS::ReportAvailable(Control& list) {
    const DataStore& store = module.store();
    const int count = store.SelectedCount();
    list.AddItem(std::string("Selected variable") + (count > 1 ? "s" : "") + ":");
    list.AddItem("");
    for (int i = 1; i <= count; ++i) {
        list.AddItem(store.SelectedName(i));
    }
    list.AddItem("");
    const int first = store.FirstCommonObs();
    const int last = store.LastCommonObs();
    list.AddItem("First available observation: t =" + NumberToText(first) + " " +
                 LabelNote(store, first));
    list.AddItem("Last available observation: t =" + NumberToText(last) + " " +
                 LabelNote(store, last));
    return ReportMissing(list, store.MissingBetween(0, module.SampleFirst, module.SampleLast));
}

bool SELOBS::ReportMissing(Control& list, Int16 missing) {
    module.MissingInBetween = missing;
    if (missing == 0) {
        return true;
    }
    list.AddItem("Number of missing variables in between: " + NumberToText(missing));
    if (module.store().DataType <= 0) {
        return true;
    }
    module.boxes().MessageBoxShort("Missing variables are only allowed at the beginning and/or end "
                                   "of the data file for time series data!",
                                   0, "Error in data file");
    module.StartAgain();
    return false;
}

bool SELOBS::ReportChosen(Control& list) {
    if (module.SampleFirst == module.FirstAvailObs && module.SampleLast == module.LastAvailObs) {
        list.AddItem("= chosen");
        return true;
    }
    const DataStore& store = module.store();
    const int first = module.SampleFirst;
    const int last = module.SampleLast;
    list.AddItem("First chosen observation: t =" + NumberToText(first) + " " +
                 LabelNote(store, first));
    list.AddItem("Last chosen observation: t =" + NumberToText(last) + " " +
                 LabelNote(store, last));
    return ReportMissing(list, store.MissingBetween(1, first, last));
}

void SELOBS::Click(Control& control) {
    Control& yes = (*this)("SubsetYes");
    Control& no = (*this)("SubsetNo");
    if (control.Name == "SubsetYes") {
        if (yes.Caption == "Yes") {
            yes.Caption = "Oops";
            no.Caption = "Confirm";
            module.ShowOnTop("SELSS1");
        } else {
            module.GoToScreen("SELOBS");
        }
    } else if (control.Name == "SubsetNo") {
        if (no.Caption == "No") {
            no.Caption = "Confirm";
            yes.Caption = "Oops";
        } else {
            (*this)("Frame1").Visible = false;
            Control& list = (*this)("List1");
            list.ClearItems();
            if (!ReportAvailable(list) || !ReportChosen(list)) {
                return;
            }
            (*this)("Continue").Visible = true;
            SetFocus("Continue");
        }
    } else if (control.Name == "Continue") {
        module.ResultText.clear();
        Visible = false;
        for (const std::string& line : (*this)("List1").Items) {
            module.ResultText += line + "\r\n";
        }
        module.ResultText += "\r\n";
        if (!module.ScreenAfterSelObs.empty()) {
            module.GoToScreen(module.ScreenAfterSelObs);
        } else {
            ListSelectedAsY(module);
        }
    } else if (control.Name == "GoBack") {
        module.StartAgain();
    }
}

void ListSelectedAsY(Module& module) {
    DataStore& store = module.store();
    const int k = store.SelectedCount();
    std::vector<Int16> all;
    for (int i = 1; i <= k; ++i) {
        all.push_back(i);
    }
    store.YIndexList.Clear();
    store.YIndexList.Assign(all);
    module.GoToScreen("SelvarYInfo");
}

} // namespace lorvane
