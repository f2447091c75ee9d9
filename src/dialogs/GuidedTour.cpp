#include "dialogs/GuidedTour.h"

#include <system_error>

#include "dialogs/LaunchPage.h"
#include "frame/Decoration.h"
#include "frame/DrivePaths.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "platform/Processes.h"

namespace lorvane {

namespace {

std::string MarkerName(const Module& module) {
    return UpperCase(module.ModuleName) + ".NOT";
}

std::string PageName(const Module& module) {
    return module.ModuleName + ".HTM";
}

// Lines of TOURSLIST.TXT name pages; each named line is followed by one that is skipped.
bool ListedOnline(const Module& module) {
    try {
        TextInput list(module.StartFile("TOURSLIST.TXT"));
        const std::string wanted = UpperCase(PageName(module));
        while (!list.AtEnd()) {
            if (UpperCase(StripQuotes(list.ReadLine(), 0)) == wanted) {
                return true;
            }
            if (!list.AtEnd()) {
                list.ReadLine();
            }
        }
    } catch (const RuntimeError&) {
        // No list: no online tour.
    }
    return false;
}

} // namespace

void TourTest(Module& module) {
    module.TourStatus = 0;
    std::error_code error;
    if (std::filesystem::exists(module.WorkFile(MarkerName(module)), error)) {
        return;
    }
    if (std::filesystem::exists(module.StartFile(PageName(module)), error)) {
        module.TourStatus = 1;
    } else if (ListedOnline(module)) {
        module.TourStatus = 2;
    }
    if (module.TourStatus > 0) {
        module.ShowOnTop("GuidedTour");
    }
}

GuidedTour::GuidedTour(Module& module) : Screen(module, "GuidedTour", "Guided tour", 6600, 5400) {
    Add(ControlKind::Label, "Label0", " Guided tour", 0, 0, 6600, 360);
    Add(ControlKind::Picture, "Picture1", "", 240, 540, 960, 960);
    Add(ControlKind::Label, "Label1", "", 1440, 540, 4920, 3900);
    Add(ControlKind::CheckBox, "Check1", "Take ONLINE tour", 1440, 4440, 3000, 300).Visible = false;
    Add(ControlKind::Button, "Command2", "Yes", 1440, 4860, 1440, 420);
    Add(ControlKind::Button, "Command3", "Not now", 3000, 4860, 1440, 420);
    Add(ControlKind::Button, "Command1", "Never", 4560, 4860, 1440, 420);
}

std::string GuidedTour::OfflinePage() const {
    return module.StartFile(PageName(module)).string();
}

std::string GuidedTour::OnlineAddress() const {
    return module.WebBase + "LorvaneTours/" + UpperCase(module.ModuleName) + ".HTM";
}

void GuidedTour::Load() {
    std::string text =
        "This module comes with a guided tour, which is accessible via the default web browser. "
        "If you use Lorvane for the first time, it is strongly recommended that you take this "
        "guided tour. \r\n\r\n";
    if (module.TourStatus == 1) {
        text += "This guided tour is available offline at\r\n" + OfflinePage() +
                "\r\nand online at\r\n" + OnlineAddress();
        (*this)("Check1").Visible = true;
    } else {
        text += "This guided tour is available online only, at\r\n" + OnlineAddress();
    }
    text +=
        "\r\n\r\nDo you want to take the guided tour? "
        "If you click 'Not now', this window will disappear, but this message will be shown again "
        "the "
        "next time. "
        "If you click 'Never', you will no longer be bothered by this message. However, if you "
        "take the "
        "guided tour on how to get data (File > How to get data) you will see this message again.";
    (*this)("Label1").Caption = text;
}

void GuidedTour::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void GuidedTour::Close() {
    module.PinnedScreen1.clear();
    module.PinnedScreen2.clear();
    module.UnloadScreen("GuidedTour");
}

void GuidedTour::TakeTour() {
    Processes& processes = module.platform().processes;
    if ((*this)("Check1").Value == 1 || module.TourStatus == 2) {
        if (!processes.open(OnlineAddress())) {
            module.boxes().MessageBoxShort("Lorvane could not launch a web browser!", 0,
                                           module.ModuleCaption);
        }
    } else {
        LaunchPage(module, OfflinePage());
    }
    (*this)("Command3").Caption = "Cancel";
    (*this)("Command2").Caption = "Oops";
}

void GuidedTour::Click(Control& control) {
    if (control.Name == "Command1") {
        TextOutput marker(module.WorkFile(MarkerName(module)), TextOutput::Mode::Output);
        marker.WriteRecord(CommaRecord().Text(
            " does not want to see the message regarding guided tour " + module.ModuleName));
        marker.Close();
        Close();
    } else if (control.Name == "Command2") {
        TakeTour();
    } else if (control.Name == "Command3") {
        Close();
    }
}

} // namespace lorvane
