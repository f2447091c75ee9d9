#include "innovation/VARDECOMP.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/OutputLog.h"
#include "innovation/ResponseOutput.h"

namespace lorvane {

VARDECOMP::VARDECOMP(Module& module)
    : Screen(module, "VARDECOMP", " Forecast error variance decomposition") {
    Add(ControlKind::Label, "Label1", " Forecast error variance decomposition", 0, 0, 9600, 360);
    Control& text = Add(ControlKind::TextBox, "Text1", "", 240, 480, 9120, 5460);
    text.MultiLine = true;
    text.Locked = true;
    // Decision: the log is the whole record, so the decomposition goes there unless the user
    // says no.
    Add(ControlKind::CheckBox, "Check1",
        "Write the forecast error variance decomposition to the output file", 240, 6150, 5880, 360)
        .Value = 1;
    Add(ControlKind::Button, "Command1", "Continue", 7920, 6120, 1440, 420);
}

void VARDECOMP::Load() {
    Control& text = (*this)("Text1");
    FontOfNotepadText(text);
    text.Caption.clear();
    for (const std::string& line : ReadDecompositionFile(module)) {
        text.Caption += line + "\r\n";
    }
    SetFocus("Command1");
}

void VARDECOMP::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label1"));
    }
}

std::string VARDECOMP::UnloggedWork() const {
    return (*this)("Check1").Value == 1 ? "The forecast error variance decomposition" : "";
}

void VARDECOMP::Click(Control& control) {
    if (control.Name != "Command1") {
        return;
    }
    if ((*this)("Check1").Value == 1) {
        AppendToLog(module, "");
        AppendToLog(module, (*this)("Text1").Caption);
    }
    module.GoToScreen("VIRPlot2");
}

} // namespace lorvane
