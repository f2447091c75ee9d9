#include "innovation/VIRPlot2.h"

#include <filesystem>
#include <system_error>

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/PictureFile.h"
#include "frame/TextFile.h"
#include "frame/TextToNumber.h"
#include "innovation/PlotList.h"
#include "innovation/ResponseOutput.h"
#include "innovation/ResponsePlot.h"

namespace lorvane {

namespace {

constexpr const char* Heading = " Plot of the innovation responses";

} // namespace

VIRPlot2::VIRPlot2(Module& module)
    : Screen(module, "VIRPlot2", " Plots of the innovation responses") {
    Add(ControlKind::Label, "Label0", Heading, 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label2", "Double click an innovation response plot or click 'Done'",
        240, 480, 9120, 255);
    Add(ControlKind::ListBox, "List1", "", 240, 750, 9120, 765);
    Add(ControlKind::Label, "Label1",
        "The dots represent the plus and minus 1 and 2 times the standard error bands  ", 240, 1560,
        9120, 255);
    Add(ControlKind::Label, "Label4", WithoutVarianceOfL, 240, 1830, 9120, 255).Visible = false;
    Add(ControlKind::Picture, "Picture1", "", 240, 2100, 9120, 3900);
    Add(ControlKind::Label, "Label3", "", 240, 6090, 4200, 630);
    // "Done" wipes the work files: it stands away from the "Continue" of the screen before, so
    // that a double click there cannot lose the plots before they are saved.
    Add(ControlKind::Button, "Command2", "Done", 4560, 6120, 1200, 420);
    Add(ControlKind::Button, "Command1", "Save this picture", 5880, 6120, 1560, 420);
    Add(ControlKind::Button, "Command6", "How to print pictures", 7560, 6120, 1800, 420);
    Add(ControlKind::ListBox, "AuxList", "", 0, 0, 0, 0);
}

void VIRPlot2::Load() {
    FontOfArialText((*this)("List1"));
    (*this)("AuxList").Visible = false;
    (*this)("Label0").Caption = Heading;
    (*this)("Label3").Caption = "Move the mousepointer over the picture to see the horizon. "
                                "Double click the picture to print the horizon.";
    Control& picture = (*this)("Picture1");
    picture.Drawing = MakeDrawing(module, picture);
}

void VIRPlot2::Activate() {
    if (module.ActivateCount != 1) {
        return;
    }
    DecorateHeader(*this, (*this)("Label0"));
    // In full size the picture has grown with the screen since it was made.
    Control& picture = (*this)("Picture1");
    if (module.FullSize == 1) {
        picture.Drawing = MakeDrawing(module, picture);
    }
    ShowPlot();
}

void VIRPlot2::ShowPlot() {
    (*this)("Label0").Caption = Heading;
    plot_ = 1;
    std::error_code error;
    if (std::filesystem::exists(module.DataFile("NOIRPLOT.TMP"), error)) {
        TextInput input(module.DataFile("NOIRPLOT.TMP"));
        plot_ = input.ReadWhole();
    }
    BuildList();
    Draw();
}

void VIRPlot2::BuildList() {
    Control& list = (*this)("List1");
    list.ClearItems();
    MakePlotList(module);
    const std::vector<PlotListEntry> entries = ReadPlotList(module);
    int counter = 0;
    for (const PlotListEntry& entry : entries) {
        list.AddItem(PlotListItem(entry));
        if (++counter == plot_ && entry.Saved == 1) {
            (*this)("Command1").Enabled = false;
        }
    }
    list.ListIndex = plot_ - 1;
}

void VIRPlot2::Draw() {
    ResponsePlot plot = ReadResponsePlot(module, plot_);
    plot.ImpactBand = ResponsesWithVarianceOfL(module);
    (*this)("Label4").Visible = !plot.ImpactBand;
    const PlotFrame frame = DrawResponsePlot(*(*this)("Picture1").Drawing, plot);
    Control& aux = (*this)("AuxList");
    aux.ClearItems();
    aux.AddItem(NumberToText(frame.H));
    aux.AddItem(NumberToText(frame.Left));
    aux.AddItem(NumberToText(frame.Right));
    aux.AddItem(NumberToText(frame.Top));
}

void VIRPlot2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        Save();
    } else if (name == "Command2") {
        module.StartAgain();
    } else if (name == "Command6") {
        module.ShowOnTop("APicPrn");
    }
}

void VIRPlot2::DoubleClick(Control& control, int item) {
    if (control.Name != "List1") {
        return;
    }
    const int index = item >= 0 ? item : control.ListIndex;
    if (index < 0 || index >= control.ListCount()) {
        return;
    }
    TextOutput out(module.DataFile("NOIRPLOT.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(index + 1));
    out.Close();
    // The screen comes again from the files: the picture, the list and the saved state.
    module.GoToScreen(Name());
}

double VIRPlot2::AuxValue(int index) {
    return TextValue(module, (*this)("AuxList").Items.at(static_cast<std::size_t>(index)));
}

Int16 VIRPlot2::HorizonUnderPointer() {
    const double H = AuxValue(0);
    const double left = AuxValue(1);
    const double right = AuxValue(2);
    return HorizonAt(currentX_, static_cast<int>(H), left, right);
}

void VIRPlot2::MouseMove(Control& control, double x, double y) {
    if (control.Name != "Picture1" || (*this)("AuxList").ListCount() < 4) {
        return;
    }
    currentX_ = x;
    currentY_ = y;
    (*this)("Label0").Caption = " Mousepointer = horizon" + NumberToText(HorizonUnderPointer());
}

void VIRPlot2::PictureDoubleClick(Control& control) {
    if (control.Name != "Picture1" || (*this)("AuxList").ListCount() < 4) {
        return;
    }
    const Int16 h = HorizonUnderPointer();
    currentY_ = AuxValue(3);
    control.Drawing->text(currentX_, currentY_, NumberToText(h), PlotTextColour);
}

void VIRPlot2::Save() {
    const std::string file = NextBitmapName(module);
    (*this)("Label0").Caption = "Plot saved as " + DataFileText(file);
    SavePicture(module, *(*this)("Picture1").Drawing, file);
    (*this)("Command1").Enabled = false;
    MarkPlotSaved(module, plot_);
    BuildList();
}

} // namespace lorvane
