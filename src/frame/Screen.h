#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "frame/Control.h"

namespace lorvane {

class Module;

// One screen of the chain as a logic object: its controls as plain state and its event
// handlers. A screen is created when it is loaded and destroyed when it is unloaded, so a
// screen reached a second time starts afresh. It knows the next screen only by name.
class Screen {
public:
    Screen(Module& module, std::string name, std::string caption, double width = 9600,
           double height = 7200);
    virtual ~Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    const std::string& Name() const { return name_; }
    // Tells this loading of the screen from every other one, even when a new screen object
    // takes the place in memory of one that was unloaded.
    long long Serial() const { return serial_; }

    // The control of that name; a name the screen does not have is a programming error
    // (run-time error 9).
    Control& operator()(std::string_view controlName);
    const Control& operator()(std::string_view controlName) const;
    Control* Find(std::string_view controlName);
    // Whether the user can see the control: it and the frame it sits in are visible.
    bool IsShown(const Control& control) const;
    std::deque<Control>& Controls() { return controls_; }
    const std::deque<Control>& Controls() const { return controls_; }

    // Moves the keyboard focus to the control. Each call counts, so that a second call for the
    // same control brings the focus back there after the user moved it.
    void SetFocus(std::string_view controlName);
    const std::string& Focus() const { return focus_; }
    long long FocusRequests() const { return focusRequests_; }
    // Makes the button the screen's default (Enter) or cancel (Escape) button; a screen has at
    // most one of each.
    void SetDefault(std::string_view buttonName);
    void SetCancel(std::string_view buttonName);
    // The screen has put a new question under the button just pressed: the views drop clicks for
    // the desktop's double-click interval, so that the second click of a double click does not
    // answer it unseen. Each call counts.
    void HoldClicks() { ++holdRequests_; }
    long long HoldRequests() const { return holdRequests_; }

    // What the screen shows that the log does not hold yet and that leaving the module, or
    // going back to the start, would throw away ("The OLS estimation results"); empty when
    // nothing would be lost.
    virtual std::string UnloggedWork() const { return {}; }

    // Events. Load runs once when the screen is created, Activate each time it becomes the
    // active screen (the module counts activations in ActivateCount), Unload before it goes.
    virtual void Load() {}
    virtual void Activate() {}
    virtual void Unload() {}
    virtual void Click(Control&) {}
    virtual void DoubleClick(Control&, int /*item*/) {}
    virtual void Change(Control&) {}
    virtual void MouseMove(Control&, double /*x*/, double /*y*/) {}
    virtual void PictureDoubleClick(Control&) {}
    virtual void Tick(Control&) {}

    std::string Caption;
    bool Visible = false;
    double Left = 0;
    double Top = 0;
    double Width;
    double Height;

protected:
    Control& Add(ControlKind kind, std::string name, std::string caption, double left, double top,
                 double width, double height);
    // A control inside a frame; the geometry is the screen's.
    Control& AddIn(const std::string& frame, ControlKind kind, std::string name,
                   std::string caption, double left, double top, double width, double height);

    Module& module;

private:
    friend class Module;

    std::string name_;
    long long serial_ = 0;
    std::deque<Control> controls_;
    std::string focus_;
    long long focusRequests_ = 0;
    long long holdRequests_ = 0;
};

} // namespace lorvane
