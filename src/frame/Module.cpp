#include "frame/Module.h"

#include <algorithm>
#include <system_error>

#include "frame/Decoration.h"
#include "frame/DrivePaths.h"
#include "frame/ModuleEnded.h"
#include "frame/NumberText.h"
#include "frame/ScreenTable.h"
#include "frame/TextFile.h"
#include "platform/Headless.h"
#include "platform/Processes.h"
#include "platform/Screens.h"

namespace lorvane {

namespace {

constexpr int TickInterval = 2000;

std::string MainProgram(const std::filesystem::path& startFolder) {
#ifdef _WIN32
    return (startFolder / "LORVANE.EXE").string();
#else
    return (startFolder / "lorvane").string();
#endif
}

} // namespace

Module::Module(Platform platform, std::string executableName)
    : platform_(platform), boxes_(platform.dialogs, platform.random), makeScreen_(CreateScreen) {
    ModuleName = UpperCase(TrimRight(executableName));
}

Module::~Module() = default;

Screen* Module::LoadedScreen(std::string_view name) {
    const std::string key = UpperCase(name);
    for (Loaded& entry : loaded_) {
        if (entry.key == key) {
            return entry.screen.get();
        }
    }
    return nullptr;
}

std::vector<Screen*> Module::LoadedScreens() {
    std::vector<Screen*> screens;
    for (Loaded& entry : loaded_) {
        screens.push_back(entry.screen.get());
    }
    return screens;
}

Screen& Module::Load(std::string_view name) {
    std::unique_ptr<Screen> screen = makeScreen_(*this, name);
    if (!screen) {
        throw RuntimeError(91, "Object variable or With block variable not set");
    }
    Screen& created = *screen;
    created.serial_ = ++loadings_;
    loaded_.push_back({UpperCase(name), std::move(screen)});
    created.Load();
    return created;
}

Screen& Module::ScreenByName(std::string_view name) {
    if (Screen* screen = LoadedScreen(name)) {
        return *screen;
    }
    return Load(name);
}

void Module::Activate(Screen& screen) {
    ++ActivateCount;
    screen.Activate();
}

bool Module::Detach(std::string_view name) {
    const std::string key = UpperCase(name);
    const auto found = std::find_if(loaded_.begin(), loaded_.end(),
                                    [&](const Loaded& entry) { return entry.key == key; });
    if (found == loaded_.end()) {
        return false;
    }
    std::unique_ptr<Screen> screen = std::move(found->screen);
    loaded_.erase(found);
    screen->Visible = false;
    screen->Unload();
    unloaded_.push_back(std::move(screen));
    return true;
}

void Module::UnloadScreen(std::string_view name) {
    if (!Detach(name) || UpperCase(name) == UpperCase(CurrentScreen)) {
        return;
    }
    if (Screen* current = LoadedScreen(CurrentScreen); current != nullptr && current->Visible) {
        Activate(*current);
    }
}

void Module::UnloadAll() {
    while (!loaded_.empty()) {
        Detach(loaded_.back().key);
    }
}

void Module::Place(Screen& screen, double left, double top, double width, double height) {
    screen.Left = left;
    screen.Top = top;
    screen.Width = width;
    screen.Height = height;
}

void Module::GoToScreen(std::string_view name) {
    TimerInterval = 0;
    if (!CurrentScreen.empty()) {
        PreviousScreen = CurrentScreen;
    }
    UnloadAll();
    PinnedScreen1.clear();
    PinnedScreen2.clear();
    CurrentScreen.clear();
    // Decision: the hourglass belongs to the work of one screen; the next screen opens with the
    // normal pointer and sets the hourglass itself when it works.
    Pointer = MousePointer::Normal;
    // The frame's title belongs to a stage of the road as well: a screen that names it names it
    // again each time it opens.
    if (!platform_.screens.frameMinimised()) {
        Caption = FrameCaption;
    }
    TimerInterval = TickInterval;
    ActivateCount = 0;
    const long long opening = ++openings_;
    Screen& screen = Load(name);
    if (opening != openings_) {
        return; // the screen's load went on to another screen
    }
    screen.Visible = true;
    Place(screen, 0, 0, FrameClientWidth, FrameClientHeight);
    ScaleToFrame(*this, screen);
    CurrentScreen = std::string(name);
    Activate(screen);
    GiveFirstFocus(screen);
}

void Module::GiveFirstFocus(Screen& screen) {
    if (screen.FocusRequests() != 0 || LoadedScreen(screen.Name()) != &screen) {
        return;
    }
    for (const Control& control : screen.Controls()) {
        if (control.Kind == ControlKind::Button && control.Default) {
            screen.SetFocus(control.Name);
            return;
        }
    }
}

void Module::OpenOnTop(std::string_view name, bool full) {
    PinnedScreen2 = std::string(name);
    Detach(name);
    ActivateCount = 0;
    const long long opening = ++openings_;
    Screen& screen = Load(name);
    if (opening != openings_) {
        return;
    }
    screen.Visible = true;
    if (full) {
        Place(screen, 0, 0, FrameClientWidth, FrameClientHeight);
        ScaleToFrame(*this, screen);
    } else {
        ScaleToFrame(*this, screen);
        const double innerWidth =
            FullSize == 1 ? platform_.screens.screenWidth() : FrameClientWidth;
        const double innerHeight =
            FullSize == 1 ? platform_.screens.screenHeight() : FrameClientHeight;
        screen.Left = (innerWidth - screen.Width) / 2;
        screen.Top = (innerHeight - screen.Height) / 2;
    }
    PinnedTop = screen.Top;
    PinnedLeft = screen.Left;
    Activate(screen);
    GiveFirstFocus(screen);
}

void Module::ShowOnTop(std::string_view name) {
    OpenOnTop(name, false);
}

void Module::ShowFullOnTop(std::string_view name) {
    OpenOnTop(name, true);
}

void Module::FrameTick() {
    if (PinnedScreen2.empty()) {
        return;
    }
    if (Screen* pinned = LoadedScreen(PinnedScreen2)) {
        pinned->Top = PinnedTop;
        pinned->Left = PinnedLeft;
    }
}

void Module::StartAgain() {
    ResetModel();
    ResetLimits();
    store_.YIndexList.Clear();
    TextOutput(DataFile("TMP.TMP"), TextOutput::Mode::Output).Close();
    DeleteMatching(DataSubfolder(), "*.TMP");
    SetChebishevOn(0);
    StructVisits = 0;
    GoToScreen("SelVar1");
}

bool Module::ConfirmDiscard() {
    for (const Loaded& entry : loaded_) {
        const std::string work = entry.screen->UnloggedWork();
        if (work.empty()) {
            continue;
        }
        // Decision: the answer that throws the results away is never the default, so that
        // Enter keeps them.
        return boxes_.MessageBoxFull(work + " are not in the output file OUTPUT.TXT yet. "
                                            "Discard them?",
                                     4 + Boxes::SecondButtonDefault, ModuleCaption) == 6;
    }
    return true;
}

void Module::WriteActiveModule() {
    if (TestRun == 1) {
        return;
    }
    TextOutput out(WorkFile("ACTIVEMODULE.TXT"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Text(ModuleName));
    out.Close();
}

void Module::RemoveActiveModule() {
    std::error_code error;
    const std::filesystem::path file = WorkFile("ACTIVEMODULE.TXT");
    if (std::filesystem::exists(file, error)) {
        std::filesystem::remove(file, error);
    }
}

void Module::SaveFramePosition() {
    if (FullSize == 1 || ScreenScale == 1 || platform_.screens.frameMinimised()) {
        return;
    }
    try {
        TextOutput out(WorkFile("TOPLEFT.TXT"), TextOutput::Mode::Output);
        out.WriteRecord(CommaRecord().Number(FrameTop).Number(FrameLeft));
        out.Close();
    } catch (const RuntimeError&) {
        // The position is a convenience; the next start centres the frame.
    }
}

void Module::ModuleEnd() {
    RemoveActiveModule();
    // The main program started below finds the folder free, mark and lock alike.
    platform_.processes.releaseLock();
    const std::string program = StripQuotes(MainProgram(StartFolder), 1);
    SaveFramePosition();
    if (TestRun != 1) {
        platform_.processes.start(program, WorkFolder.string(), WindowStyle::Normal);
    }
    throw ModuleEnded();
}

void Module::Run(const std::function<void()>& action) {
    if (ended_) {
        return;
    }
    // Unloaded screens die when the outermost action is over.
    struct Sweep {
        Module& module;
        ~Sweep() {
            if (--module.actionDepth_ == 0) {
                module.unloaded_.clear();
            }
        }
    } sweep{*this};
    ++actionDepth_;
    try {
        action();
    } catch (const ModuleEnded&) {
        ended_ = true;
    } catch (const NoQueuedAnswer&) {
        // The headless driver's own signal that its script left a box unanswered.
        throw;
    } catch (const std::exception& exception) {
        // A standard exception (an allocation that failed, a size no container can hold) ends
        // the module like any run-time error instead of aborting the process.
        ended_ = true;
        failure_ = ErrorOfException(exception);
        RemoveActiveModule();
    }
}

namespace {

template <typename Handler>
std::function<void()> OnControl(Module& module, std::string_view screenName,
                                std::string_view controlName, Handler handler, bool byUser = true) {
    return [&module, screen = std::string(screenName), control = std::string(controlName), handler,
            byUser] {
        Screen* target = module.LoadedScreen(screen);
        if (target == nullptr) {
            throw RuntimeError(SubscriptOutOfRange, "Screen " + screen + " is not loaded");
        }
        // A control the user cannot see or use takes no events: the order of the steps of
        // a screen rests on which of its buttons are enabled.
        Control& used = (*target)(control);
        if (!byUser || (target->IsShown(used) && used.Enabled)) {
            handler(*target, used);
        }
    };
}

} // namespace

void Module::Click(std::string_view screen, std::string_view control) {
    Run(OnControl(*this, screen, control, [](Screen& s, Control& c) { s.Click(c); }));
}

void Module::DoubleClick(std::string_view screen, std::string_view control, int item) {
    Run(OnControl(*this, screen, control,
                  [item](Screen& s, Control& c) { s.DoubleClick(c, item); }));
}

void Module::Change(std::string_view screen, std::string_view control) {
    Run(OnControl(*this, screen, control, [](Screen& s, Control& c) { s.Change(c); }));
}

void Module::MouseMove(std::string_view screen, std::string_view control, double x, double y) {
    Run(OnControl(*this, screen, control, [x, y](Screen& s, Control& c) { s.MouseMove(c, x, y); }));
}

void Module::PictureDoubleClick(std::string_view screen, std::string_view control) {
    Run(OnControl(*this, screen, control, [](Screen& s, Control& c) { s.PictureDoubleClick(c); }));
}

void Module::Tick(std::string_view screen, std::string_view control) {
    Run(OnControl(
        *this, screen, control, [](Screen& s, Control& c) { s.Tick(c); }, false));
}

} // namespace lorvane
