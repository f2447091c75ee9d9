#include "structural/VARSTR2.h"

#include "frame/Decoration.h"
#include "frame/DrivePaths.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/TextFile.h"
#include "platform/Processes.h"
#include "structural/WrapTextLine.h"

namespace lorvane {

namespace {

constexpr double ScreenWidth = 9000;
constexpr double ScreenHeight = 6600;

} // namespace

VARSTR2::VARSTR2(Module& module)
    : Screen(module, "VARSTR2", "Save the text", ScreenWidth, ScreenHeight) {
    Add(ControlKind::Label, "Label0", " Nonstructural VAR versus structural VAR", 0, 0, ScreenWidth,
        360);
    Control& text = Add(ControlKind::TextBox, "Text1", "", 240, 480, 8520, 5040);
    text.MultiLine = true;
    text.WordWrap = true;
    text.Locked = true;
    Add(ControlKind::Button, "Command1", "Edit and print text via NotePad", 240, 5700, 3000, 420);
    Add(ControlKind::Button, "Command2", "Add text to LORVANE.DAT\\OUTPUT.TXT", 3360, 5700, 3600,
        420);
    Add(ControlKind::Button, "Command3", "Back", 7320, 5700, 1440, 420);
}

void VARSTR2::Load() {
    FontOfNotepadText((*this)("Text1"));
    std::string text;
    for (const std::string& line : ReadLines(module.DataFile("VARTEXT.TMP"))) {
        text += TrimRight(StripQuotes(line, 0)) + "\r\n";
    }
    (*this)("Text1").Caption = text;
    SetCancel("Command3");
}

void VARSTR2::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VARSTR2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        Edit();
    } else if (name == "Command2") {
        AddToLog();
    } else if (name == "Command3") {
        module.UnloadScreen(Name());
    }
}

void VARSTR2::Edit() {
    (*this)("Command1").Enabled = false;
    (*this)("Command2").Enabled = false;
    WrapExplanationFile(module);
    module.Pointer = MousePointer::Normal;
    const std::string file = module.DataFile("VARTEXT.TMP").string();
    // The editor runs on its own; whether it starts does not matter here.
#ifdef _WIN32
    module.platform().processes.start("NOTEPAD.EXE", file, WindowStyle::Maximised);
#else
    module.platform().processes.open(file);
#endif
    (*this)("Command3").Caption = "Done";
}

void VARSTR2::AddToLog() {
    (*this)("Command1").Enabled = false;
    (*this)("Command2").Enabled = false;
    module.Pointer = MousePointer::Wait;
    OpenLogSection(module);
    WrapExplanationFile(module);
    AppendToLog(module, "");
    for (const std::string& line : ReadLines(module.DataFile("VARTEXT.TMP"))) {
        AppendToLog(module, StripQuotes(line, 0));
    }
    module.Pointer = MousePointer::Normal;
    (*this)("Command3").Caption = "Done";
}

} // namespace lorvane
