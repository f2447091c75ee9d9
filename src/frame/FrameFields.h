#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "frame/Int16.h"

namespace lorvane {

// The frame window Wallpaper: its caption, geometry (twips) and window state.
enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

// The mouse pointer over the frame: the hourglass while the module works.
enum class MousePointer { Normal, Wait };

// The shared fields of the frame: what start-up decides and navigation keeps.
struct FrameFields {
    // Design size of the frame and of every full-frame screen.
    static constexpr double DesignWidth = 9600;
    static constexpr double DesignHeight = 7200;

    // Upper-case name of the executable without extension.
    std::string ModuleName;
    std::string StartDrive;
    std::string DataDrive;
    std::filesystem::path DataFolderCopy;
    Int16 TestRun;
    Int16 WorkFolderGiven;

    // The frame's complete caption, the title of several message boxes.
    std::string ModuleCaption;
    // The caption to restore after minimising.
    std::string FrameCaption;
    // What the frame shows as its caption now.
    std::string Caption;
    Int16 FrameReady;
    double FrameClientWidth = DesignWidth;
    double FrameClientHeight = DesignHeight;
    double FrameTop = 0;
    double FrameLeft = 0;
    double FrameWidth = DesignWidth;
    double FrameHeight = DesignHeight;
    WindowState FrameState = WindowState::Normal;
    MousePointer Pointer = MousePointer::Normal;
    // The frame's Timer1: 2000 ms while it runs, 0 when off.
    int TimerInterval = 0;

    double ScreenScale = 1;
    Int16 FullSize;
    std::array<Int16, 23> GlobalOption{};
    Int16 TourStatus;
    std::string WebBase;

    // Navigation.
    std::string CurrentScreen;
    std::string PreviousScreen;
    std::string PinnedScreen1;
    std::string PinnedScreen2;
    double PinnedTop = 0;
    double PinnedLeft = 0;
    Int16 ActivateCount;
};

} // namespace lorvane
