#include "data/SelvarYInfo.h"

#include <cmath>

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"

namespace lorvane {

SelvarYInfo::SelvarYInfo(Module& module) : Screen(module, "SelvarYInfo", "Characteristics") {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1", "Variables:", 240, 480, 2760, 300);
    Add(ControlKind::ListBox, "List1", "", 240, 840, 2760, 5040);
    Add(ControlKind::Label, "Label3", "Characteristics:", 3240, 480, 6120, 300);
    Add(ControlKind::ListBox, "List2", "", 3240, 840, 6120, 5040);
    Add(ControlKind::Button, "Command1", "Continue", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command2", "Back", 7920, 6120, 1440, 420);
    FontOfNotepadText((*this)("List2"));
}

void SelvarYInfo::Activate() {
    if (module.ActivateCount != 1) {
        return;
    }
    Control& heading = (*this)("Label0");
    heading.Caption = module.store().YCount() > 1 ? " Characteristics of the dependent variables"
                                                  : " Characteristics of the dependent variable";
    DecorateHeader(*this, heading);
    BuildReport();
    SetFocus("Command1");
}

void SelvarYInfo::BuildReport() {
    const DataStore& store = module.store();
    Control& variables = (*this)("List1");
    if (store.YCount() == 1) {
        variables.AddItem("Dependent variable:");
        variables.AddItem(store.YName(1));
    } else {
        for (int i = 1; i <= store.YCount(); ++i) {
            variables.AddItem(store.YName(i));
        }
    }
    Control& report = (*this)("List2");
    for (int i = 1; i <= store.YCount(); ++i) {
        ReportVariable(i, report);
    }
}

void SelvarYInfo::ReportVariable(int i, Control& report) {
    const DataStore& store = module.store();
    const double missingCode = store.MissingCode;
    auto isMissing = [&](int t) { return missingCode != 0 && store.YValue(t, i) == missingCode; };
    auto observation = [&](const std::string& head, int t) {
        const std::string label = store.ObsLabelOf(t);
        const bool note = store.DataType > 0 && Val(label) != t;
        return head + NumberToText(t) + (note ? " (=" + label + ")" : "");
    };
    auto usableBetween = [&](int from, int to) {
        int usable = 0;
        for (int t = from; t <= to; ++t) {
            usable += isMissing(t) ? 0 : 1;
        }
        return usable;
    };

    report.AddItem(store.YName(i));
    const int first = store.FirstYObs();
    const int last = store.LastYObs();
    const int sampleFirst = module.SampleFirst;
    const int sampleLast = module.SampleLast;
    if (sampleFirst == first && sampleLast == last) {
        report.AddItem(observation("  First observation =", first));
        report.AddItem(observation("  Last observation  =", last));
        report.AddItem("  Number of usable observations:" +
                       NumberToText(usableBetween(first, last)));
    } else {
        report.AddItem(observation("  First available observation =", first));
        report.AddItem(observation("  Last available observation  =", last));
        report.AddItem(observation("  First chosen observation =", sampleFirst));
        report.AddItem(observation("  Last chosen observation  =", sampleLast));
        report.AddItem("  Number of usable chosen observations:" +
                       NumberToText(usableBetween(sampleFirst, sampleLast)));
        report.AddItem("Subsample characteristics:");
    }

    double minimum = 0;
    double maximum = 0;
    double sum = 0;
    int count = 0;
    int zeros = 0;
    bool integer = true;
    bool dummy = true;
    bool nonNegative = true;
    for (int t = sampleFirst; t <= sampleLast; ++t) {
        if (isMissing(t)) {
            continue;
        }
        const double x = store.YValue(t, i);
        minimum = count == 0 ? x : std::min(minimum, x);
        maximum = count == 0 ? x : std::max(maximum, x);
        sum += x;
        ++count;
        integer = integer && x == std::floor(x);
        dummy = dummy && (x == 0 || x == 1);
        nonNegative = nonNegative && x >= 0;
        zeros += x == 0 ? 1 : 0;
    }
    const double mean = CheckedDivide(sum, count);
    report.AddItem("  Minimum value: " + FormatNumber(minimum, "0.0000000E+000"));
    report.AddItem("  Maximum value: " + FormatNumber(maximum, "0.0000000E+000"));
    report.AddItem("  Sample mean:   " + FormatNumber(mean, "0.0000000E+000"));
    if (dummy) {
        report.AddItem("  This variable is a zero-one dummy variable. ");
    } else if (integer) {
        report.AddItem("  This variable is integer valued.");
    } else if (nonNegative && zeros > 0) {
        report.AddItem("  This variable is nonnegative, with" + NumberToText(zeros) +
                       " zero values.");
    } else {
        report.AddItem("  This variable is continuously distributed!");
    }
    report.AddItem("");

    const double spread = std::fabs(maximum - minimum);
    if (spread < 1e-20) {
        const std::string kind = spread == 0
                                     ? "constant (" + Trim(NumberToText(minimum)) + ")!"
                                     : "almost constant (min = " + Trim(NumberToText(minimum)) +
                                           ", max = " + Trim(NumberToText(maximum)) + ")!";
        module.boxes().MessageBoxShort("Variable " + store.YName(i) + " is " + kind + " Module " +
                                           module.ModuleName + " will be terminated.",
                                       0, "Error in module " + module.ModuleName);
        module.ModuleEnd();
    }
}

void SelvarYInfo::Leave() {
    const DataStore& store = module.store();
    const int n = store.YCount();
    std::string& text = module.ResultText;
    text += n == 1 ? "Dependent variable:\r\n\r\n" : "Dependent variables:\r\n\r\n";
    if (n == 1) {
        text += "Y = " + store.YName(1) + "\r\n\r\n";
    } else {
        for (int i = 1; i <= n; ++i) {
            text += "Y(" + Trim(NumberToText(i)) + ") = " + store.YName(i) + "\r\n";
        }
        text += "\r\n";
    }
    text += "Characteristics:\r\n\r\n";
    for (const std::string& line : (*this)("List2").Items) {
        text += line + "\r\n";
    }
    module.store().StoreZeroLags(n);
    module.GoToScreen(module.ScreenAfterInfo);
}

void SelvarYInfo::Click(Control& control) {
    if (control.Name == "Command1") {
        Leave();
    } else if (control.Name == "Command2") {
        module.StartAgain();
    }
}

} // namespace lorvane
