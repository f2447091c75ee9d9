#include "innovation/APicPrn.h"

#include "frame/Decoration.h"
#include "frame/DrivePaths.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "platform/Processes.h"
#include "platform/Surface.h"

namespace lorvane {

namespace {

constexpr const char* SaveFirst[] = {
    "will then be stored in sub-folder LORVANE.DAT as a ",
    "bitmap file with extension .BMP. Upon returning to the Lorvane main ",
    "module, click 'Menu -> Output -> View bitmap files', and follow the instructions. "};

} // namespace

APicPrn::APicPrn(Module& module)
    : Screen(module, "APicPrn", " How to print and/or edit pictures", 8400, 4320) {
    Add(ControlKind::Label, "Label0", "How to print and/or edit pictures", 0, 0, 8400, 360);
    Control& text = Add(ControlKind::TextBox, "Text1", "", 240, 480, 7920, 2760);
    text.MultiLine = true;
    text.WordWrap = true;
    text.Locked = true;
    Add(ControlKind::Button, "Command2", "Import the picture in MS Paint now", 240, 3480, 3600,
        420);
    Add(ControlKind::Button, "Command1", "OK", 6960, 3480, 1200, 420);
}

void APicPrn::Load() {
    BuildText(CopyPicture());
    SetFocus("Command1");
}

void APicPrn::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

bool APicPrn::CopyPicture() {
    Screen* plots = module.LoadedScreen("VIRPlot2");
    Control* picture = plots != nullptr ? plots->Find("Picture1") : nullptr;
    if (picture == nullptr || !picture->Drawing) {
        return false;
    }
    try {
        return picture->Drawing->saveBitmap(module.WorkFile("BITMAP.TMP"));
    } catch (const std::exception&) {
        return false;
    }
}

Int16 APicPrn::WriteTest() {
    if (writeTest_ == 0) {
        try {
            TextOutput out(module.DataFile("EXIST.TMP"), TextOutput::Mode::Output);
            out.PrintLine("?");
            out.Close();
            writeTest_ = 1;
        } catch (const RuntimeError&) {
            writeTest_ = -1;
        }
    }
    return writeTest_;
}

void APicPrn::BuildText(bool copied) {
    const std::string importNow =
        "Import the picture in MS Paint now, and save it under another name (the initial path is " +
        module.WorkFolder.string() + ").";
    std::string text;
    const auto line = [&text](const std::string& words) { text += words + "\r\n"; };
    if (!copied) {
        line("In order to print or edit a picture, save it first. The picture ");
        for (const char* words : SaveFirst) {
            line(words);
        }
        (*this)("Command2").Visible = false;
    } else if (WriteTest() == 1) {
        line("There are two ways to print or edit a picture:");
        line("(1) Save the picture first. The picture ");
        for (const char* words : SaveFirst) {
            line(words);
        }
        line("(2) " + importNow);
    } else {
        line(importNow);
    }
    line("");
    line("Note that the bottom of the picture frame has space to add text.");
    if (module.FullSize == 1) {
        line("");
        line("Also note that the picture will be saved in its current size, which may be too "
             "large if you are going to use it in a paper. If so, run Lorvane in default screen "
             "mode" +
             std::string(UpperCase(module.CurrentScreen) == "PLOT3D"
                             ? ", or resize the picture using the scroll bars before you save it."
                             : "."));
    }
    (*this)("Text1").Caption = text;
}

void APicPrn::Click(Control& control) {
    if (control.Name == "Command1") {
        module.UnloadScreen(Name());
    } else if (control.Name == "Command2") {
        control.Enabled = false;
        if (StartPaint()) {
            module.UnloadScreen(Name());
        }
    }
}

bool APicPrn::StartPaint() {
    const std::string path = StripQuotes(module.WorkFile("BITMAP.TMP").string(), 0);
    Processes& processes = module.platform().processes;
    for (const char* program : {FirstPaintProgram, SecondPaintProgram}) {
        try {
            if (processes.start(program, path, WindowStyle::Normal)) {
                return true;
            }
        } catch (const std::exception&) {
            // The next program, or the message below.
        }
    }
    module.boxes().MessageBoxShort("Cannot import this picture in MS Paint!", 0,
                                   "Module " + module.ModuleName);
    return false;
}

} // namespace lorvane
