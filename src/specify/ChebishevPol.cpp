#include "specify/ChebishevPol.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "specify/Deterministic.h"

namespace lorvane {

namespace {

constexpr const char* Reference = "Reference: Bierens, H.J. (1997), \"Testing the unit root with "
                                  "drift hypothesis against nonlinear trend "
                                  "stationarity, with an application to the US price level and "
                                  "interest rate\", Journal of Econometrics 81, "
                                  "29-64.";

} // namespace

ChebishevPol::ChebishevPol(Module& module)
    : Screen(module, "ChebishevPol", "Chebishev time polynomials") {
    Add(ControlKind::Label, "Label1", " Chebishev time polynomials", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label2", "", 240, 480, 9120, 1500);
    Add(ControlKind::Label, "Label3", "q = ", 240, 2160, 600, 360);
    Add(ControlKind::TextBox, "qval", "", 840, 2100, 720, 360).Locked = true;
    Add(ControlKind::Button, "qup", "q up", 1800, 2100, 1200, 420);
    Add(ControlKind::Button, "qdown", "q down", 3120, 2100, 1200, 420);
    Add(ControlKind::Button, "Klaar", "q OK", 4440, 2100, 1200, 420);
    Control& text = Add(ControlKind::TextBox, "Text1", "", 240, 2760, 9120, 3120);
    text.MultiLine = true;
    text.Locked = true;
    Add(ControlKind::Button, "Command1", "Oops", 3240, 6120, 1440, 420).Visible = false;
    Add(ControlKind::Button, "Command3", "Skip this option", 4800, 6120, 1440, 420);
    Add(ControlKind::Button, "Command2", "Continue", 7920, 6120, 1440, 420).Visible = false;
}

void ChebishevPol::Load() {
    FontOfNotepadText((*this)("Text1"));
    if (module.Trend == 1) {
        (*this)("Label2").Caption = "Since you already have specified a linear time trend, you can "
                                    "augment d(t) with detrended Chebishev "
                                    "polynomials. The detrended Chebishev polynomials of order 0 "
                                    "and 1 are the constant 1 and the "
                                    "standardized linear time trend. Therefore, the maximum order "
                                    "'q' of the detrended Chebishev polynomial "
                                    "should be greater than 1. If you specify q = 1, no detrended "
                                    "Chebishev polynomials will be included.";
    } else {
        (*this)("Label2").Caption = "Since you have not specified a linear time trend, you can "
                                    "augment d(t) with regular Chebishev "
                                    "polynomials. The regular Chebishev polynomial of order 0 is "
                                    "the constant 1. Therefore, the maximum "
                                    "order 'q' of the Chebishev polynomial should be greater or "
                                    "equal to 1. If you specify q=0, no "
                                    "Chebishev time polynomials will be included.";
    }
    // Every visit, and every "Oops", chooses anew: the model text shows no earlier choice.
    module.SetChebishevOn(0);
    module.q = ChebishevMinimum(module);
    module.ModelText = VarModelText(module);
    (*this)("Text1").Caption = module.ModelText;
    ShowQ();
    SetFocus("Klaar");
}

void ChebishevPol::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label1"));
    }
}

void ChebishevPol::ShowQ() {
    (*this)("qval").Caption = Trim(NumberToText(module.q));
}

std::string ChebishevPol::AugmentationText() const {
    const bool detrended = module.Trend == 1;
    const int minimum = ChebishevMinimum(module);
    const int count = module.q - minimum;
    std::string text = "d(t) is augmented with";
    text += count == 1 ? " one" : NumberToText(count);
    text += detrended ? " detrended " : " ";
    text += "Chebishev time polynomial";
    text += count > 1 ? "s" : "";
    text += ", ";
    text += detrended ? "Detr.Cheb.Pol(k), of order" : "Cheb.Pol(k), of order";
    text += " k =";
    const int firstOrder = minimum + 1;
    if (count <= 3) {
        for (int k = firstOrder; k <= module.q; ++k) {
            text += (k == firstOrder ? "" : ",") + NumberToText(k);
        }
    } else {
        text += NumberToText(firstOrder) + ",...," + NumberToText(module.q);
    }
    return text + "\r\n" + Reference;
}

void ChebishevPol::Click(Control& control) {
    const std::string& name = control.Name;
    const int minimum = ChebishevMinimum(module);
    if (name == "qup") {
        module.q += 1;
        ShowQ();
    } else if (name == "qdown") {
        if (module.q > minimum) {
            module.q -= 1;
        }
        ShowQ();
    } else if (name == "Klaar") {
        if (module.q > minimum) {
            module.ChebishevText = AugmentationText();
            module.SetChebishevOn(1);
            module.ModelText = VarModelText(module);
            (*this)("Text1").Caption = module.ModelText;
        } else {
            module.SetChebishevOn(0);
        }
        for (const char* hidden : {"qup", "qdown", "Klaar", "Command3"}) {
            (*this)(hidden).Visible = false;
        }
        (*this)("Command1").Visible = true;
        (*this)("Command2").Visible = true;
        SetFocus("Command2");
    } else if (name == "Command1") {
        module.GoToScreen("ChebishevPol");
    } else if (name == "Command3") {
        module.SetChebishevOn(0);
        module.q = minimum;
        module.GoToScreen("VARDetermin");
    } else if (name == "Command2") {
        module.GoToScreen("VARDetermin");
    }
}

} // namespace lorvane
