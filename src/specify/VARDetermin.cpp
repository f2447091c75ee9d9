#include "specify/VARDetermin.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "specify/Deterministic.h"

namespace lorvane {

VARDetermin::VARDetermin(Module& module) : Screen(module, "VARDetermin", "Deterministic part") {
    Add(ControlKind::Label, "Label0", " Specify the deterministic part d(t) of the VAR", 0, 0, 9600,
        360);
    Control& text = Add(ControlKind::TextBox, "Text1", "", 240, 480, 6120, 5400);
    text.MultiLine = true;
    text.Locked = true;
    Add(ControlKind::Button, "Command1", "", 6600, 480, 2760, 420);
    Add(ControlKind::Button, "Command2", "Intercept and trend", 6600, 1020, 2760, 420);
    Add(ControlKind::Button, "Command3", "Seasonal dummies", 6600, 1560, 2760, 420);
    Add(ControlKind::Button, "Command6", "Chebishev time polynomials", 6600, 2100, 2760, 420);
    Add(ControlKind::Button, "Command4", "Oops!", 6600, 2880, 2760, 420);
    Add(ControlKind::Button, "Command5", "d(t) is O.K.", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command7", "Respecify VAR", 7920, 6120, 1440, 420);
}

void VARDetermin::Load() {
    FontOfNotepadText((*this)("Text1"));
    const int dataType = module.store().DataType;
    (*this)("Command3").Enabled = dataType >= 2 && dataType <= 4;
    ShowModel();
    SetFocus("Command5");
}

void VARDetermin::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VARDetermin::ShowModel() {
    (*this)("Command1").Caption = module.Intercept == 1 ? "No intercept" : "Intercept";
    (*this)("Command6").Enabled = module.Intercept == 1;
    module.ModelText = VarModelText(module);
    (*this)("Text1").Caption = module.ModelText;
}

void VARDetermin::Click(Control& control) {
    const std::string& name = control.Name;
    const bool annual = module.store().DataType == 1;
    if (name == "Command1" || name == "Command2" || name == "Command3" || name == "Command4") {
        module.SetChebishevOn(0);
    }
    if (name == "Command1") {
        module.Intercept = control.Caption == "Intercept" ? 1 : 0;
        module.Trend = 0;
        if (annual) {
            module.Seasonal = 0;
        }
    } else if (name == "Command2") {
        module.Intercept = 1;
        module.Trend = 1;
        if (annual) {
            module.Seasonal = 0;
        }
    } else if (name == "Command3") {
        module.Seasonal = 1;
    } else if (name == "Command4") {
        module.Intercept = 1;
        module.Trend = 0;
        module.Seasonal = 0;
        module.p = 1;
        module.GoToScreen("VARDetermin");
        return;
    } else if (name == "Command5") {
        module.GoToScreen("VAR2");
        return;
    } else if (name == "Command6") {
        module.GoToScreen("ChebishevPol");
        return;
    } else if (name == "Command7") {
        module.StartAgain();
        return;
    }
    ShowModel();
    SetFocus("Command5");
}

} // namespace lorvane
