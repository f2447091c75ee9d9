#include "support/TestScreens.h"

#include "frame/NumberText.h"

namespace lorvane::test {

std::vector<std::string>& ProbeScreen::Events() {
    static std::vector<std::string> events;
    return events;
}

ProbeScreen::ProbeScreen(Module& module, std::string name)
    : Screen(module, std::move(name), "Probe") {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 300);
    Add(ControlKind::Button, "Command1", "Next", 7000, 6000, 1200, 400);
    Add(ControlKind::Button, "Command2", "Back", 8300, 6000, 1200, 400);
    Control& list = Add(ControlKind::ListBox, "List1", "", 200, 600, 3000, 3000);
    list.MultiSelect = true;
    list.AddItem("alpha");
    list.AddItem("* beta");
    list.AddItem("gamma(*)");
    Add(ControlKind::CheckBox, "Check1", "Option", 200, 3800, 2000, 300);
    Add(ControlKind::TextBox, "Text1", "", 3500, 600, 5000, 3000);
}

void ProbeScreen::Load() {
    Events().push_back(UpperCase(Name()) + " load");
}

void ProbeScreen::Activate() {
    Events().push_back(UpperCase(Name()) + " activate " +
                       std::to_string(module.ActivateCount.Value()));
}

void ProbeScreen::Unload() {
    Events().push_back(UpperCase(Name()) + " unload");
}

void ProbeScreen::Click(Control& control) {
    Events().push_back(UpperCase(Name()) + " click " + control.Name);
    if (control.Name == "Command1") {
        module.GoToScreen("SelObs");
    } else if (control.Name == "Command2") {
        module.StartAgain();
    }
}

void ProbeScreen::DoubleClick(Control& control, int item) {
    Events().push_back(UpperCase(Name()) + " dblclick " + control.Name + " " +
                       std::to_string(item));
}

void ProbeScreen::Change(Control& control) {
    Events().push_back(UpperCase(Name()) + " change " + control.Name + " " + control.Caption);
}

Module::ScreenMaker ProbeTable(std::vector<std::string> names) {
    return [names](Module& module, std::string_view name) -> std::unique_ptr<Screen> {
        for (const std::string& known : names) {
            if (UpperCase(known) == UpperCase(name)) {
                return std::make_unique<ProbeScreen>(module, std::string(name));
            }
        }
        return nullptr;
    };
}

} // namespace lorvane::test
