#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/DataStore.h"
#include "data/SampleFields.h"
#include "dialogs/Boxes.h"
#include "frame/FrameFields.h"
#include "frame/ParameterBlock.h"
#include "frame/Platform.h"
#include "frame/RuntimeError.h"
#include "frame/Screen.h"
#include "frame/Workspace.h"
#include "specify/CHEBPOL.h"

namespace lorvane {

// Everything that lives for the whole run of the module: the platform, the folders, the shared
// fields, the boxes and the screens. Screens reach it by reference; nothing is global, so two
// modules in one process do not see each other.
class Module : public Workspace,
               public FrameFields,
               public ParameterBlock,
               public ModelFields,
               public SampleFields {
public:
    explicit Module(Platform platform, std::string executableName = "VAR");
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    const Platform& platform() const { return platform_; }
    Boxes& boxes() { return boxes_; }
    // The data set in memory.
    DataStore& store() { return store_; }
    const DataStore& store() const { return store_; }
    // The tables of the detrended Chebishev polynomials.
    CHEBPOL& chebishev() { return chebishev_; }

    // The table that makes screens by name; the module's own table unless replaced (tests
    // drive the navigation with screens of their own).
    using ScreenMaker = std::function<std::unique_ptr<Screen>(Module&, std::string_view)>;
    void UseScreenTable(ScreenMaker maker) { makeScreen_ = std::move(maker); }

    // --- Navigation between screens.
    // The screen of that name (compared in upper case), loaded first if it is not; a name
    // outside the screen table is an ordinary run-time error.
    Screen& ScreenByName(std::string_view name);
    // The loaded screen of that name, or nothing.
    Screen* LoadedScreen(std::string_view name);
    // Loaded screens in the order they were opened.
    std::vector<Screen*> LoadedScreens();
    // Replaces everything in the frame by the screen.
    void GoToScreen(std::string_view name);
    // Opens the screen centred above the current one and pins it there.
    void ShowOnTop(std::string_view name);
    // Opens the screen at frame size above the current one and pins it there.
    void ShowFullOnTop(std::string_view name);
    // Unloads the screen; when a screen stays in the frame it becomes active again.
    void UnloadScreen(std::string_view name);
    // Wipes the work files and returns to the first screen.
    void StartAgain();
    // Asks before results that the log does not hold yet are thrown away (by going back to
    // the start or by closing the frame); true when nothing would be lost or the user agrees.
    bool ConfirmDiscard();
    // Deletes ACTIVEMODULE.TXT, saves the frame position, starts the main program unless in a
    // test run, and ends the module by throwing ModuleEnded.
    [[noreturn]] void ModuleEnd();
    // The frame's 2-second tick: keeps a pinned screen in its place and in front.
    void FrameTick();

    void SetChebishevOn(Int16 value) { chebishevOn_ = value; }
    Int16 ChebishevOn() const { return chebishevOn_; }

    // --- Events from the front ends. Each runs one user action: a ModuleEnded ends the
    // module, an uncaught run-time error ends it with the general run-time error.
    void Run(const std::function<void()>& action);
    void Click(std::string_view screen, std::string_view control);
    void DoubleClick(std::string_view screen, std::string_view control, int item);
    void Change(std::string_view screen, std::string_view control);
    void MouseMove(std::string_view screen, std::string_view control, double x, double y);
    void PictureDoubleClick(std::string_view screen, std::string_view control);
    void Tick(std::string_view screen, std::string_view control);
    bool Ended() const { return ended_; }
    // The run-time error that ended the module, if one did.
    const std::optional<RuntimeError>& Failure() const { return failure_; }

    // --- Work-folder files.
    void WriteActiveModule();
    void RemoveActiveModule();
    void SaveFramePosition();

    // The pending report.
    std::string ResultText;

private:
    struct Loaded {
        std::string key; // upper-case name
        std::unique_ptr<Screen> screen;
    };

    Screen& Load(std::string_view name);
    bool Detach(std::string_view name);
    void Activate(Screen& screen);
    void UnloadAll();
    void OpenOnTop(std::string_view name, bool full);
    void Place(Screen& screen, double left, double top, double width, double height);
    // A screen that opened without sending the focus anywhere gives it to its default button.
    void GiveFirstFocus(Screen& screen);

    Platform platform_;
    Boxes boxes_;
    DataStore store_;
    CHEBPOL chebishev_;
    ScreenMaker makeScreen_;
    Int16 chebishevOn_;
    std::vector<Loaded> loaded_;
    // Screens unloaded during the current action; they die when it is over, so that a handler
    // that navigates away may still return through its own code.
    std::vector<std::unique_ptr<Screen>> unloaded_;
    int actionDepth_ = 0;
    // Counts the openings of screens, so that an opening can tell that its screen's load
    // navigated elsewhere.
    long long openings_ = 0;
    long long loadings_ = 0;
    bool ended_ = false;
    std::optional<RuntimeError> failure_;
};

} // namespace lorvane
